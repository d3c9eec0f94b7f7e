#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "Tests/Support/TemporaryFolder.h"

namespace brivane {

/// Compares the text with Tests/Golden/<name>; a golden file that doesn't exist is a failure. With
/// BRIVANE_REGENERATE=1 in the environment the text becomes the golden file instead.
inline void expectGolden(const std::string& name, const std::string& text) {
  const auto file = std::filesystem::path("Tests/Golden") / name;
  const char* const regenerate = std::getenv("BRIVANE_REGENERATE");
  if (regenerate != nullptr && std::string(regenerate) == "1") {
    std::ofstream stream(file, std::ios::binary);
    stream << text;
    stream.close();
    ASSERT_TRUE(stream.good()) << "can't write " << file;
  }
  ASSERT_TRUE(std::filesystem::exists(file))
      << file << " is missing; BRIVANE_REGENERATE=1 writes it";
  EXPECT_EQ(text, TemporaryFolder::read(file)) << "BRIVANE_REGENERATE=1 rewrites " << file;
}

}  // namespace brivane
