// What callers supply may throw: services here, script objects in bad_arguments_test.cpp. Nothing
// leaves the library, and the call fails.
#include <stdexcept>

#include "frame/calls/calls.h"

namespace uxtest {
namespace {

struct Thrown : std::runtime_error {
    Thrown() : std::runtime_error("a service threw") {}
};

// Services that throw, and note that they did.
class ThrowingServices {
public:
    ThrowingServices() {
        services_->messageText = [this](int, int, CStringUTF8&) -> bool { throw noted(); };
        services_->helpCategory = [this](UXXmlWrapperBase&, UXXmlWrapperBase&, int, int) -> int {
            throw noted();
        };
        services_->wildcardMatch = [this](const CStringUTF8&, const CStringUTF8&, int) -> bool {
            throw noted();
        };
        services_->validateValue = [this](UXXmlWrapperBase&, const CStringUTF8&) -> bool {
            throw noted();
        };
        services_->rangeSlots = [this](int, int, UXRangeSlots&) { throw noted(); };
        services_->finishRange = [this](UXXmlWrapperBase&, int) { throw noted(); };
        services_->cleanName = [this](CStringUTF8&, const CStringUTF8&) -> bool { throw noted(); };
    }
    bool threw() const { return threw_; }

private:
    Thrown noted() {
        threw_ = true;
        return {};
    }

    FakeHostServices services_;
    bool threw_ = false;
};

class UnderThrowingServices : public Probe {
public:
    void before_call() override { services_.emplace(); }
    void after_call() override {
        threw = services_->threw();
        services_.reset();
    }
    void done(const Scene&, const std::string& result, const Row& row) override {
        if (threw) {
            EXPECT_EQ(result, row.bad.text());
        }
    }

    bool threw = false;

private:
    std::optional<ThrowingServices> services_;
};

}  // namespace

class Services : public testing::TestWithParam<std::string> {};

TEST_P(Services, ThatThrowMakeTheCallFail) {
    for (const Call& call : all_calls().calls().at(GetParam())) {
        UnderThrowingServices probe;
        try {
            call.probe(probe);
        } catch (...) {
            probe.after_call();
            ADD_FAILURE() << "an exception left the library";
        }
    }
}
INSTANTIATE_TEST_SUITE_P(Sweep, Services, testing::ValuesIn(all_calls().names()),
                         [](const auto& row) { return row.param; });

TEST(ThrowingServices, AreAskedByManyCalls) {
    int asked = 0;
    for (const auto& [name, calls] : all_calls().calls()) {
        for (const Call& call : calls) {
            UnderThrowingServices probe;
            call.probe(probe);
            asked += probe.threw ? 1 : 0;
        }
    }
    EXPECT_GE(asked, 10);
}

}  // namespace uxtest
