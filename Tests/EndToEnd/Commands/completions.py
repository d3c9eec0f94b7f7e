"""Completes commands in bash, zsh and fish, each by its own machinery, with a brivane-ctl that lists two
displays. A shell that isn't there is a failure. Prints "ok" or "FAILED" and what was completed."""
import os
import pathlib
import pty
import re
import select
import subprocess
import sys
import tempfile
import time

FOLDER = pathlib.Path.cwd() / "Packaging/Linux/completions"
LIST = '#!/bin/sh\n[ "$*" = list ] || exit 1\necho "[3] Halden H27: 60"\necho "[14] Norvik 24: not driven"\n'
COMMANDS = "up down set get list menu --help --version"
# What is typed behind the program's name, and what it can become.
TYPED = {
    "g": "get",
    "": COMMANDS,
    "get ": "3 14",
    "set 40 1": "14",
    "set ": "",
    "list --": "--json",
    "menu --": "--start",
    "up ": "",
}
# fish offers options only once a dash is typed.
TYPED_IN_FISH = TYPED | {"": "up down set get list menu", "-": "--help --version"}


def run(words, environment):
    return subprocess.run(words, env=environment, stdin=subprocess.DEVNULL, capture_output=True, text=True, timeout=60)


def in_bash(typed, environment):
    words = ["brivane-ctl"] + typed.split(" ")
    script = ('. "$0"; [[ $(complete -p brivane-ctl) = *"-F _brivane_ctl "* ]] || exit 1; COMP_WORDS=("$@");'
              ' COMP_CWORD=$(($# - 1)); _brivane_ctl; printf "%s\\n" "${COMPREPLY[@]}"')
    return run(["bash", "-c", script, FOLDER / "brivane-ctl.bash", *words], environment).stdout.split()


def in_fish(typed, environment):
    script = f"source {FOLDER}/brivane-ctl.fish; complete --do-complete 'brivane-ctl {typed}'"
    said = run(["fish", "--no-config", "-c", script], environment).stdout
    return [line.split("\t")[0] for line in said.splitlines()]


def read_until(terminal, mark):
    """What the terminal shows until the mark, without control sequences."""
    shown = b""
    deadline = time.monotonic() + 60
    while mark not in shown and time.monotonic() < deadline:
        if select.select([terminal], [], [], 1)[0]:
            shown += os.read(terminal, 65536)
    return re.sub(r"\x1b\[[0-9;?]*[a-zA-Z]|\x1b[=>]|\r", "", shown.decode())


def in_zsh(typed, environment):
    """Types into a zsh of its own, whose completion list is what could be inserted, between two marks."""
    child, terminal = pty.fork()
    if child == 0:
        os.execvpe("zsh", ["zsh", "-f", "-i"], environment | {"TERM": "xterm", "PS1": ""})
    # A wrapper of the one builtin that every completion ends in notes each match.
    setup = f"""fpath=({FOLDER} $fpath); autoload -U compinit; compinit -u -D
compadd() {{ builtin compadd -A matches "$@"; found+=($matches); builtin compadd "$@" }}
note() {{ found=(); zle complete-word; BUFFER=; zle -M ""; print -r -- "<<${{(j: :)found}}>>" }}
zle -N note; bindkey '^I' note; unsetopt zle_bracketed_paste; stty -echo; print -r -- re""ady
"""
    try:
        os.write(terminal, setup.encode())
        read_until(terminal, b"ready")
        os.write(terminal, f"brivane-ctl {typed}\t".encode())
        shown = read_until(terminal, b">>")
        return dict.fromkeys(re.search("<<(.*)>>", shown).group(1).split())
    finally:
        os.close(terminal)
        os.waitpid(child, 0)


def main():
    failed = False
    with tempfile.TemporaryDirectory(prefix="brivane-test-") as folder:
        program = pathlib.Path(folder) / "brivane-ctl"
        program.write_text(LIST)
        program.chmod(0o755)
        environment = os.environ | {"PATH": f"{folder}:{os.environ['PATH']}", "HOME": folder, "LC_ALL": "C.UTF-8"}
        for shell, complete, table in (("bash", in_bash, TYPED), ("zsh", in_zsh, TYPED), ("fish", in_fish, TYPED_IN_FISH)):
            for typed, expected in table.items():
                try:
                    found = sorted(complete(typed, environment))
                except (OSError, AttributeError, subprocess.SubprocessError) as problem:
                    found = [f"{type(problem).__name__}: {problem}"]
                good = found == sorted(expected.split())
                failed |= not good
                print("ok" if good else "FAILED", f"{shell} completes \"brivane-ctl {typed}\"", *([] if good else found))
    return failed


if __name__ == "__main__":
    sys.exit(main())
