// Preferences, bundles, the grant, the log, arguments and child processes.
#include "Tests/Mac/Machine/Fakes/FakeSystem.h"

#include <ApplicationServices/ApplicationServices.h>
#include <crt_externs.h>
#include <fcntl.h>
#include <os/log.h>
#include <pwd.h>
#include <spawn.h>
#include <unistd.h>

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <mutex>

#include "Tests/Mac/Machine/Fakes/FakeCoreFoundation.h"
#include "Tests/Mac/Machine/Fakes/FakeMac.h"

namespace brivane::fake {
namespace {

std::unique_ptr<System>& current() {
  static std::unique_ptr<System> only = std::make_unique<System>();
  return only;
}

[[noreturn]] void fail(const char* what) {
  std::fprintf(stderr, "System: %s\n", what);
  std::abort();
}

CFURLRef urlOf(const std::optional<std::string>& path) {
  if (!path) return nullptr;
  return reinterpret_cast<CFURLRef>(makeObject(urlKind, {*path}));
}

std::uintptr_t bundle = 0;

Preferences::Process& asking() {
  Preferences& preferences = fake::system().preferences;
  return preferences.processes[preferences.asking];
}

}  // namespace

System& system() {
  return *current();
}

void resetSystem() {
  current() = std::make_unique<System>();
}

}  // namespace brivane::fake

struct os_log_s {};

using namespace brivane;        // NOLINT
using namespace brivane::fake;  // NOLINT

extern "C" {

// Preferences

const CFStringRef kCFPreferencesAnyHost = CFSTR("any host");
const CFStringRef kCFPreferencesCurrentUser = CFSTR("current user");

CFPropertyListRef CFPreferencesCopyAppValue(CFStringRef key, CFStringRef application) {
  const auto& domain = asking().copied[stringOf(application)];
  const auto found = domain.find(stringOf(key));
  return found == domain.end() ? nullptr : makePropertyList(found->second);
}

void CFPreferencesSetAppValue(CFStringRef key, CFPropertyListRef value, CFStringRef application) {
  const std::string domain = stringOf(application);
  const std::string name = stringOf(key);
  if (value == nullptr) {
    asking().waiting[domain][name] = std::nullopt;
    asking().copied[domain].erase(name);
  } else {
    asking().waiting[domain][name] = valueOf(value);
    asking().copied[domain][name] = valueOf(value);
  }
}

Boolean CFPreferencesAppSynchronize(CFStringRef application) {
  Preferences& preferences = fake::system().preferences;
  if (!preferences.canBeSaved) return 0;
  const std::string domain = stringOf(application);
  for (const auto& [name, value] : asking().waiting[domain]) {
    if (value) {
      preferences.stored[domain][name] = *value;
    } else if (preferences.stored.contains(domain)) {
      preferences.stored[domain].erase(name);
    }
  }
  asking().waiting.erase(domain);
  const auto found = preferences.stored.find(domain);
  asking().copied[domain] =
      found == preferences.stored.end() ? PropertyValue::Dictionary{} : found->second;
  return 1;
}

CFArrayRef CFPreferencesCopyKeyList(CFStringRef application, CFStringRef user, CFStringRef host) {
  if (user != kCFPreferencesCurrentUser || host != kCFPreferencesAnyHost) fail("other settings");
  const auto& copied = asking().copied;
  const auto found = copied.find(stringOf(application));
  if (found == copied.end() || found->second.empty()) return nullptr;
  PropertyValue::Array keys;
  for (const auto& [name, value] : found->second) keys.push_back({name});
  return static_cast<CFArrayRef>(makePropertyList({keys}));
}

CFDictionaryRef CFPreferencesCopyMultiple(CFArrayRef keys, CFStringRef application,
                                          CFStringRef user, CFStringRef host) {
  if (user != kCFPreferencesCurrentUser || host != kCFPreferencesAnyHost) fail("other settings");
  const auto& domain = asking().copied[stringOf(application)];
  PropertyValue::Dictionary values;
  const PropertyValue names = valueOf(keys);
  for (const PropertyValue& name : std::get<PropertyValue::Array>(names.content)) {
    values[*name.text()] = domain.at(*name.text());
  }
  return static_cast<CFDictionaryRef>(makePropertyList({values}));
}

// Bundle and languages

CFBundleRef CFBundleGetMainBundle(void) {
  return fake::system().hasMainBundle ? reinterpret_cast<CFBundleRef>(&bundle) : nullptr;
}

CFStringRef CFBundleGetIdentifier(CFBundleRef) {
  // Borrowed: it lives as long as the bundle.
  static std::map<std::string, CFStringRef> identifiers = {
      {"com.quorrel.brivane", CFSTR("com.quorrel.brivane")}};
  const auto& identifier = fake::system().bundleIdentifier;
  return identifier ? identifiers.at(*identifier) : nullptr;
}

CFURLRef CFBundleCopyExecutableURL(CFBundleRef) {
  return urlOf(fake::system().executable);
}

CFURLRef CFBundleCopyResourcesDirectoryURL(CFBundleRef) {
  return urlOf(fake::system().resourceFolder);
}

CFArrayRef CFLocaleCopyPreferredLanguages(void) {
  if (!fake::system().languages) return nullptr;
  PropertyValue::Array tags;
  for (const std::string& tag : *fake::system().languages) tags.push_back({tag});
  return static_cast<CFArrayRef>(makePropertyList({tags}));
}

int* _NSGetArgc(void) {
  static int count = 0;
  count = static_cast<int>(fake::system().arguments.size());
  return &count;
}

char*** _NSGetArgv(void) {
  static std::vector<char*> pointers;
  static char** first = nullptr;
  pointers.clear();
  for (std::string& word : fake::system().arguments) pointers.push_back(word.data());
  pointers.push_back(nullptr);
  first = pointers.data();
  return &first;
}

// The account

passwd* fake_getpwuid(uid_t user) {
  static passwd account{};
  if (user != ::getuid()) fail("another user's account");
  auto& folder = fake::system().accountFolder;
  if (!folder) return nullptr;
  account.pw_dir = folder->data();
  return &account;
}

// Temporary files

/// The number of bytes that the value takes with its end, even if the buffer has fewer; 0 without
/// one.
std::size_t fake_confstr(int name, char* buffer, std::size_t size) noexcept {
  constexpr int userTemporaryFolder = 65537;
  if (name != userTemporaryFolder) fail("another value than the user's temporary folder");
  const auto& folder = fake::system().temporaryFolder;
  if (!folder) return 0;
  std::snprintf(buffer, size, "%s", folder->c_str());
  return folder->size() + 1;
}

// The grant

CFStringRef kAXTrustedCheckOptionPrompt = CFSTR("AXTrustedCheckOptionPrompt");

Boolean AXIsProcessTrusted(void) {
  return fake::system().isTrusted;
}

Boolean AXIsProcessTrustedWithOptions(CFDictionaryRef options) {
  const PropertyValue prompting{PropertyValue::Dictionary{{"AXTrustedCheckOptionPrompt", {true}}}};
  mac().note(valueOf(options) == prompting ? "AX prompt" : "AX something else");
  return fake::system().isTrusted;
}

// The log

struct os_log_s _os_log_default;

bool os_log_type_enabled(os_log_t, os_log_type_t) {
  return true;
}

void brivane_recorded_os_log(os_log_t, os_log_type_t type, const char* format, ...) {
  static std::mutex mutex;
  if (std::strcmp(format, "%{public}s") != 0 || type != OS_LOG_TYPE_DEFAULT) {
    fail("a line of the log that nobody could read");
  }
  va_list arguments;
  va_start(arguments, format);
  const std::lock_guard lock(mutex);
  fake::system().log.emplace_back(va_arg(arguments, const char*));
  va_end(arguments);
}

// Child processes

int fake_posix_spawn(pid_t* child, const char* path, const posix_spawn_file_actions_t* files,
                     const posix_spawnattr_t* attributes, char* const arguments[],
                     char* const environment[]) noexcept {
  // Not every system's dup2 keeps a descriptor open that is copied onto itself.
  for (int standard = STDIN_FILENO; standard <= STDERR_FILENO; ++standard) {
    if (::fcntl(standard, F_GETFD) == FD_CLOEXEC)
      fail("a pipe in the place of a child's own files");
  }
  const auto& programs = fake::system().programs;
  const auto found = programs.find(path);
  const char* const program = found == programs.end() ? path : found->second.c_str();
  return ::posix_spawn(child, program, files, attributes, arguments, environment);
}
}
