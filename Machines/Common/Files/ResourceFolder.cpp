#include "Machines/Common/Files/ResourceFolder.h"

#include <system_error>
#include <variant>

#include "Machines/Common/Files/WholeFile.h"

namespace brivane {
namespace {

constexpr std::size_t largestResourceBytes = 16 << 20;

}  // namespace

std::filesystem::path resourceFolder() {
  std::error_code failed;
  const auto executable = std::filesystem::read_symlink("/proc/self/exe", failed);
  if (failed) return {};
  return executable.parent_path().parent_path() / "share" / "brivane";
}

std::optional<std::string> readResource(const std::filesystem::path& folder,
                                        const std::string& bundle, const std::string& path) {
  auto content = readWholeFile(folder / bundle / path, largestResourceBytes);
  if (auto* const bytes = std::get_if<std::string>(&content)) return std::move(*bytes);
  return std::nullopt;
}

}  // namespace brivane
