#include "Machines/Linux/System/Sysfs.h"

#include <fcntl.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>

#include "BrivaneCore/Support/Numbers.h"
#include "Machines/Common/Files/FileDescriptor.h"

namespace brivane {

std::optional<std::string> readAttribute(const std::filesystem::path& file) {
  const FileDescriptor descriptor(::open(file.c_str(), O_RDONLY | O_CLOEXEC));
  if (!descriptor.isOpen()) return std::nullopt;
  std::string content;
  std::array<char, 4096> buffer{};
  while (true) {
    const ssize_t count = ::read(descriptor.get(), buffer.data(), buffer.size());
    if (count < 0) return std::nullopt;
    if (count == 0) return content;
    content.append(buffer.data(), static_cast<std::size_t>(count));
  }
}

std::optional<std::string> readTextAttribute(const std::filesystem::path& file) {
  auto text = readAttribute(file);
  if (text && text->ends_with('\n')) text->pop_back();
  return text;
}

std::optional<std::int64_t> readNumberAttribute(const std::filesystem::path& file) {
  const auto text = readTextAttribute(file);
  const auto number = text ? parseInteger(*text) : std::nullopt;
  if (!number || *number < 0) return std::nullopt;
  return number;
}

int writeAttribute(const std::filesystem::path& file, std::string_view text) {
  const FileDescriptor descriptor(::open(file.c_str(), O_WRONLY | O_CLOEXEC | O_TRUNC));
  if (!descriptor.isOpen()) return errno;
  const ssize_t count = ::write(descriptor.get(), text.data(), text.size());
  if (count < 0) return errno;
  return static_cast<std::size_t>(count) == text.size() ? 0 : EIO;
}

std::vector<std::string> namesIn(const std::filesystem::path& folder) {
  std::vector<std::string> names;
  std::error_code failed;
  std::filesystem::directory_iterator entry(folder, failed);
  for (const std::filesystem::directory_iterator end; !failed && entry != end;
       entry.increment(failed)) {
    names.push_back(entry->path().filename().string());
  }
  std::sort(names.begin(), names.end());
  return names;
}

std::optional<std::filesystem::path> deviceWith(std::string_view attribute,
                                                const std::filesystem::path& classLink) {
  std::error_code noLink;
  const auto target = std::filesystem::read_symlink(classLink, noLink);
  if (noLink) return std::nullopt;
  for (auto device = (classLink.parent_path() / target).lexically_normal();
       device.has_relative_path(); device = device.parent_path()) {
    if (std::filesystem::exists(device / attribute, noLink)) return device;
  }
  return std::nullopt;
}

std::optional<unsigned> numberBehind(std::string_view prefix, std::string_view name) {
  if (!name.starts_with(prefix)) return std::nullopt;
  const char* const end = name.data() + name.size();
  unsigned number = 0;
  const auto [stop, error] = std::from_chars(name.data() + prefix.size(), end, number);
  if (error != std::errc() || stop != end) return std::nullopt;
  return number;
}

}  // namespace brivane
