#include "Machines/Common/Files/ResourceFolder.h"

#ifdef __APPLE__
#include <mach-o/dyld.h>

#include <array>
#include <cstdint>
#endif

#include <system_error>
#include <variant>

#include "Machines/Common/Files/WholeFile.h"

namespace brivane {
namespace {

constexpr std::size_t largestResourceBytes = 16 << 20;

/// The running program's file; empty when the system doesn't say.
std::filesystem::path executableFile() {
  std::error_code failed;
#ifdef __APPLE__
  std::array<char, 4096> path{};
  auto size = static_cast<std::uint32_t>(path.size());
  if (::_NSGetExecutablePath(path.data(), &size) != 0) return {};
  return std::filesystem::canonical(path.data(), failed);
#else
  return std::filesystem::read_symlink("/proc/self/exe", failed);
#endif
}

}  // namespace

std::filesystem::path resourceFolder() {
  const auto executable = executableFile();
  if (executable.empty()) return {};
  return executable.parent_path().parent_path() / "share" / "brivane";
}

std::optional<std::string> readResource(const std::filesystem::path& folder,
                                        const std::string& bundle, const std::string& path) {
  auto content = readWholeFile(folder / bundle / path, largestResourceBytes);
  if (auto* const bytes = std::get_if<std::string>(&content)) return std::move(*bytes);
  return std::nullopt;
}

}  // namespace brivane
