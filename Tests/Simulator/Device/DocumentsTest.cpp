#include "Simulator/Device/Documents.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <thread>
#include <vector>

#include "Simulator/Foundation/Foundation.h"
#include "Simulator/Timeline/Timeline.h"
#include "Tests/Support/PlatformTest.h"

namespace {

using sim::Documents;
using sim::DocumentsFolder;
using sim::Json;

void write(const std::filesystem::path& file, const std::string& text) {
  std::ofstream(file, std::ios::binary) << text;
}

class DocumentsTest : public test::FoundationTest {
 protected:
  DocumentsTest() {
    sim::foundation::install();
    sim::Timeline::shared().setSink([this](const Json& entry) {
      entries_.push_back({{"name", entry.at("name")},
                          {"format", entry.at("format")},
                          {"value", entry.at("value")}});
    });
  }
  ~DocumentsTest() override { sim::Timeline::shared().setSink({}); }

  std::vector<Json> entries_;
};

TEST_F(DocumentsTest, AreAFolderThatGoesWithItsOwner) {
  std::filesystem::path path;
  {
    const DocumentsFolder folder(Documents::writable);
    const DocumentsFolder other(Documents::writable);
    path = folder.path();
    EXPECT_NE(path, other.path());
    write(path / "file", "text");
    EXPECT_TRUE(std::filesystem::exists(path / "file"));
  }
  EXPECT_FALSE(std::filesystem::exists(path));
}

TEST_F(DocumentsTest, AreNowhereWhereTheyAreMissing) {
  EXPECT_TRUE(DocumentsFolder(Documents::missing).path().empty());
  sim::DocumentsWatch({}).recordWritten();
  EXPECT_TRUE(entries_.empty());
}

TEST_F(DocumentsTest, CannotBeWrittenWhereTheyAreReadOnlyEvenByRoot) {
  std::filesystem::path path;
  {
    const DocumentsFolder folder(Documents::readOnly);
    path = folder.path();
    std::thread([&] {
      sim::giveUpFilePrivileges();
      std::thread([&] { write(path / "file", "text"); }).join();
    }).join();
    EXPECT_FALSE(std::filesystem::exists(path / "file"));
  }
  EXPECT_FALSE(std::filesystem::exists(path));
}

TEST_F(DocumentsTest, ShowEachFileThatIsWritten) {
  const DocumentsFolder folder(Documents::writable);
  const sim::DocumentsWatch watch(folder.path());
  watch.recordWritten();
  EXPECT_TRUE(entries_.empty());
  write(folder.path() / "b", "<plist version=\"1.0\"><array/></plist>");
  write(folder.path() / "a", "{ A = B; }");
  watch.recordWritten();
  watch.recordWritten();
  const Json text = {{"name", "a"}, {"format", "openStep"}, {"value", {{"A", "B"}}}};
  const Json xml = {{"name", "b"}, {"format", "xml"}, {"value", Json::array()}};
  EXPECT_EQ(entries_, (std::vector<Json>{text, xml}));
  // The same content again, so soon that the file system's clock stands still.
  write(folder.path() / "a", "{ A = B; }");
  watch.recordWritten();
  EXPECT_EQ(entries_, (std::vector<Json>{text, xml, text}));
}

TEST_F(DocumentsTest, ShowBytesThatAreNoPropertyList) {
  const DocumentsFolder folder(Documents::writable);
  std::filesystem::create_directory(folder.path() / "in");
  write(folder.path() / "in" / "bytes", "<\x01>");
  sim::DocumentsWatch(folder.path()).recordWritten();
  EXPECT_EQ(entries_,
            (std::vector<Json>{{{"name", "in/bytes"}, {"format", nullptr}, {"value", "PAE+"}}}));
}

}  // namespace
