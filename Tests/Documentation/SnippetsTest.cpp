// What docs/integration.md shows is what the checks compile: each block of code stands in the file
// that the line before it names.

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <regex>
#include <set>
#include <string>
#include <vector>

namespace {

using Lines = std::vector<std::string>;

const std::filesystem::path tree = ZIB_TREE;

Lines linesOf(const std::filesystem::path& file) {
  std::ifstream stream(file);
  EXPECT_TRUE(stream) << file;
  Lines lines;
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

// The block may stand further to the left than in its file.
bool standsAt(const Lines& file, std::size_t at, const Lines& block) {
  if (file.size() - at < block.size()) return false;
  const std::size_t indent = file[at].find_first_not_of(' ');
  if (indent == std::string::npos) return false;
  for (std::size_t index = 0; index < block.size(); ++index) {
    const std::string& line = file[at + index];
    if (line != (block[index].empty() ? "" : std::string(indent, ' ') + block[index])) return false;
  }
  return true;
}

bool contains(const Lines& file, const Lines& block) {
  for (std::size_t at = 0; at < file.size(); ++at) {
    if (standsAt(file, at, block)) return true;
  }
  return false;
}

TEST(SnippetsTest, StandInTheFilesThatTheyName) {
  const Lines page = linesOf(tree / "docs/integration.md");
  const std::regex name("<!-- (\\S+) -->");
  std::set<std::string> shown;
  for (std::size_t at = 0; at < page.size(); ++at) {
    if (!page[at].starts_with("```")) continue;
    std::smatch match;
    ASSERT_TRUE(at > 0 && std::regex_match(page[at - 1], match, name))
        << "line " << at + 1 << ": a block of code without <!-- FILE --> before it";
    Lines block;
    const std::size_t first = at;
    while (++at < page.size() && page[at] != "```") block.push_back(page[at]);
    EXPECT_TRUE(contains(linesOf(tree / "Examples/Snippets" / match[1].str()), block))
        << "line " << first + 1 << ": not in " << match[1];
    shown.insert(match[1]);
  }
  std::set<std::string> files;
  for (const auto& entry : std::filesystem::directory_iterator(tree / "Examples/Snippets")) {
    files.insert(entry.path().filename());
  }
  EXPECT_EQ(shown, files);
}

}  // namespace
