// Sending a message on x86-64: every register that may hold an argument is kept while the method is
// looked up, then the method is jumped to as if it had been called. Variadic methods are told in
// al how many vector registers are used.

.macro KEEP_ARGUMENTS
  pushq %rbp
  .cfi_def_cfa_offset 16
  .cfi_offset %rbp, -16
  movq %rsp, %rbp
  .cfi_def_cfa_register %rbp
  subq $0xc0, %rsp
  movaps %xmm0, 0x00(%rsp)
  movaps %xmm1, 0x10(%rsp)
  movaps %xmm2, 0x20(%rsp)
  movaps %xmm3, 0x30(%rsp)
  movaps %xmm4, 0x40(%rsp)
  movaps %xmm5, 0x50(%rsp)
  movaps %xmm6, 0x60(%rsp)
  movaps %xmm7, 0x70(%rsp)
  movq %rax, 0x80(%rsp)
  movq %rdi, 0x88(%rsp)
  movq %rsi, 0x90(%rsp)
  movq %rdx, 0x98(%rsp)
  movq %rcx, 0xa0(%rsp)
  movq %r8, 0xa8(%rsp)
  movq %r9, 0xb0(%rsp)
.endm

.macro RESTORE_ARGUMENTS
  movq %rax, %r11
  movaps 0x00(%rsp), %xmm0
  movaps 0x10(%rsp), %xmm1
  movaps 0x20(%rsp), %xmm2
  movaps 0x30(%rsp), %xmm3
  movaps 0x40(%rsp), %xmm4
  movaps 0x50(%rsp), %xmm5
  movaps 0x60(%rsp), %xmm6
  movaps 0x70(%rsp), %xmm7
  movq 0x80(%rsp), %rax
  movq 0x88(%rsp), %rdi
  movq 0x90(%rsp), %rsi
  movq 0x98(%rsp), %rdx
  movq 0xa0(%rsp), %rcx
  movq 0xa8(%rsp), %r8
  movq 0xb0(%rsp), %r9
  leave
  .cfi_def_cfa %rsp, 8
  .cfi_restore %rbp
.endm

.text

// Nil answers every message with zero.
.globl objc_msgSend
.type objc_msgSend, @function
objc_msgSend:
  .cfi_startproc
  testq %rdi, %rdi
  jz 1f
  KEEP_ARGUMENTS
  call brivaneTestMessage@PLT
  RESTORE_ARGUMENTS
  jmp *%r11
1:
  xorl %eax, %eax
  xorl %edx, %edx
  xorps %xmm0, %xmm0
  xorps %xmm1, %xmm1
  ret
  .cfi_endproc

.globl objc_msgSendSuper2
.type objc_msgSendSuper2, @function
objc_msgSendSuper2:
  .cfi_startproc
  KEEP_ARGUMENTS
  call brivaneTestSuperMessage@PLT
  RESTORE_ARGUMENTS
  movq (%rdi), %rdi
  jmp *%r11
  .cfi_endproc

// A large result comes first, as the place where it goes. For nil the caller has zeroed it.
.globl objc_msgSend_stret
.type objc_msgSend_stret, @function
objc_msgSend_stret:
  .cfi_startproc
  testq %rsi, %rsi
  jz 1f
  KEEP_ARGUMENTS
  movq %rsi, %rdi
  movq %rdx, %rsi
  call brivaneTestMessage@PLT
  RESTORE_ARGUMENTS
  jmp *%r11
1:
  movq %rdi, %rax
  ret
  .cfi_endproc

.globl objc_msgSendSuper2_stret
.type objc_msgSendSuper2_stret, @function
objc_msgSendSuper2_stret:
  .cfi_startproc
  KEEP_ARGUMENTS
  movq %rsi, %rdi
  movq %rdx, %rsi
  call brivaneTestSuperMessage@PLT
  RESTORE_ARGUMENTS
  movq (%rsi), %rsi
  jmp *%r11
  .cfi_endproc

.section .note.GNU-stack, "", @progbits
