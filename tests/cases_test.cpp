// Replays every case file, a test a block.

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <set>

#include "tests/case_replay.h"

namespace {

using morandel::cases::Block;

class CaseTest : public testing::Test {
  public:
    explicit CaseTest(Block block) : m_block(std::move(block)) {}
    void TestBody() override {
        for (const std::string& problem : morandel::cases::replay(m_block)) {
            ADD_FAILURE() << problem;
        }
    }

  private:
    Block m_block;
};

std::string identifier(const std::string& name) {
    std::string id;
    for (const char c : name) id += std::isalnum(static_cast<unsigned char>(c)) != 0 ? c : '_';
    return id;
}

void register_file(const std::filesystem::path& file) {
    std::set<std::string> names;
    for (Block& block : morandel::cases::read_case_file(file)) {
        std::string name = identifier(block.name);
        while (!names.insert(name).second) name += "_again";
        testing::RegisterTest(identifier("cases_" + file.stem().string()).c_str(), name.c_str(),
                              nullptr, nullptr, __FILE__, __LINE__,
                              [block]() -> testing::Test* { return new CaseTest(block); });
    }
}

}  // namespace

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    std::vector<std::filesystem::path> files;
    for (const auto& entry :
         std::filesystem::recursive_directory_iterator(MORANDEL_SOURCE_FOLDER "/tests/cases")) {
        if (entry.path().extension() == ".cases") files.push_back(entry.path());
    }
    std::ranges::sort(files);
    for (const auto& file : files) register_file(file);
    return RUN_ALL_TESTS();
}
