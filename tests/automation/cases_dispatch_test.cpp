// The case files through IDispatch, as a scripting host makes the calls.

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>

#include "tests/automation/host.h"
#include "tests/automation/host_steps.h"
#include "tests/case_replay.h"

namespace {

using namespace morandel;
using namespace morandel::hosts;

Variant to_variant(const HostValue& value) {
    if (const auto* number = std::get_if<double>(&value)) return Variant(*number);
    if (const auto* whole = std::get_if<int>(&value)) return Variant(*whole);
    return Variant(to_wide(std::get<std::string>(value)));
}

void compare(const Variant& found, const HostValue& wanted, bool inexact) {
    if (const auto* number = std::get_if<double>(&wanted)) {
        ASSERT_EQ(V_VT(&found), VT_R8);
        EXPECT_PRED3(morandel::cases::same_number, V_R8(&found), *number, inexact);
    } else if (const auto* whole = std::get_if<int>(&wanted)) {
        ASSERT_EQ(V_VT(&found), VT_I4);
        EXPECT_EQ(V_I4(&found), *whole);
    } else {
        EXPECT_EQ(found.text(), to_wide(std::get<std::string>(wanted)));
    }
}

void play(const Host& host, const Step& step) {
    const std::string method = step.method;
    std::vector<Variant> inputs;
    std::vector<Variant> outputs(step.outputs.size());
    for (const HostValue& input : step.inputs) inputs.push_back(to_variant(input));
    std::vector<VARIANTARG> arguments(inputs.begin(), inputs.end());
    for (Variant& output : outputs) arguments.push_back(output.by_reference());
    const Outcome outcome = host.call(std::wstring(method.begin(), method.end()), arguments);
    ASSERT_EQ(outcome.result, S_OK);
    for (std::size_t i = 0; i < outputs.size(); ++i) {
        if (step.outputs[i]) compare(outputs[i], *step.outputs[i], step.inexact);
    }
}

class BlockTest : public testing::Test {
  public:
    explicit BlockTest(cases::Block block) : m_block(std::move(block)) {}
    void TestBody() override {
        const Apartment apartment;
        std::unique_ptr<Host> host;
        for (const Step& step : steps_of(m_block)) {
            SCOPED_TRACE(m_block.name + ", line " + std::to_string(step.line) + ": " + step.method);
            if (step.begins()) {
                host = std::make_unique<Host>();
                ASSERT_EQ(host->created, S_OK);
            } else {
                play(*host, step);
            }
        }
    }

  private:
    cases::Block m_block;
};

std::size_t register_blocks() {
    std::size_t steps = 0;
    for (const auto& entry :
         std::filesystem::directory_iterator(MORANDEL_SOURCE_FOLDER "/tests/cases")) {
        if (entry.path().extension() != ".cases") continue;
        const std::string suite = "dispatch_" + entry.path().stem().string();
        for (const cases::Block& block : cases::read_case_file(entry.path())) {
            const std::size_t count = steps_of(block).size();
            if (count == 0) continue;
            steps += count;
            testing::RegisterTest(suite.c_str(), block.name.c_str(), nullptr, nullptr, __FILE__,
                                  __LINE__,
                                  [block]() -> testing::Test* { return new BlockTest(block); });
        }
    }
    return steps;
}

}  // namespace

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    const std::size_t steps = register_blocks();
    std::printf("%zu calls\n", steps);
    return steps > 1000 ? RUN_ALL_TESTS() : 1;
}
