// A whole session: the bytes choose what the host does, what the device answers and when memory runs out.
#include "fuzz/fuzz_device.h"
#include "tests/support/failing_allocations.h"

#include <new>

using namespace koine;
using namespace koine::fuzz;

namespace {

constexpr int kMostSteps = 64;

/// Steps are numbered by the first byte of each; new ones go to the end, or the kept inputs change meaning.
class Session {
public:
    explicit Session(Input& input) : input_(input), device_(boost::make_shared<Device>()) {
        answerAsCamera(*device_);
        device_->set_server_address("camera");
    }

    void step() {
        switch (input_.byte() % 13U) {
        case 0:
            return chooseKind(*device_, input_.byte());
        case 1: {
            const std::string& line = deviceLines()[input_.byte() % deviceLines().size()];
            device_->answers[line] = input_.text();
            return;
        }
        case 2:
            device_->answers.erase(deviceLines()[input_.byte() % deviceLines().size()]);
            device_->silence = -static_cast<int>(input_.byte() % 16U);
            return;
        case 3:
            return setUp();
        case 4:
            return request();
        case 5:
            return requestData();
        case 6:
            shortage_ = input_.byte();
            return;
        case 7:
            return refresh();
        case 8:
            device_->close();
            device_->testOK(nullptr, 0, nullptr, nullptr);
            return;
        case 9:
            shortage_ = input_.byte();
            staysOut_ = true;
            return;
        case 10:
            return rewrite();
        case 11:
            return stream();
        default:
            return renew();
        }
    }

    void end() { expectLockIsFree(device_); }

private:
    unsigned int uid() { return input_.byte() % 4U; }

    /// Lets the step run with the allocation failing that the bytes chose, once or from then on.
    template <typename Step>
    void underShortage(Step step) {
        const test::FailAllocations shortage(shortage_, staysOut_ ? test::FailAllocations::Then::stayOut
                                                                  : test::FailAllocations::Then::recover);
        shortage_ = 0;
        staysOut_ = false;
        step();
    }

    /// Single steps may end with std::bad_alloc; what hosts call may not, and stays outside of this.
    template <typename Step>
    void stepUnderShortage(Step step) {
        try {
            underShortage(step);
        } catch (const std::bad_alloc&) {
            return;
        }
    }

    void setUp() {
        const unsigned int user = uid();
        const std::string text = input_.text();
        stepUnderShortage([&] { device_->init(user, text.c_str()); });
    }

    void request() {
        const unsigned int user = uid();
        std::string line = input_.text();
        char* answer = nullptr;
        underShortage([&] { device_->requestHttpStr(user, line.data(), nullptr, nullptr, &answer); });
        device_->freeData(answer);
    }

    void requestData() {
        const unsigned int user = uid();
        std::string line = input_.text();
        underShortage([&] { device_->requestHttpData(user, line.data(), nullptr, nullptr); });
        device_->GetCgiMapStr(user, "Product-Name");
    }

    void refresh() {
        const unsigned int user = uid();
        stepUnderShortage([&] {
            device_->getCacheLogin(user, 1, nullptr, nullptr);
            device_->getCacheConfigCamera(user, 1, nullptr, "Camera.*", nullptr);
            device_->getCacheConfigMedia(user, 1, nullptr, nullptr, nullptr);
        });
    }

    void rewrite() {
        const unsigned int user = uid();
        std::string line = input_.text();
        OwnedText rewritten;
        OwnedText reconnect;
        stepUnderShortage([&] {
            device_->checkCgiParameter(user, line.data());
            device_->recoveryUrl(user, line.data(), OutText(rewritten));
            device_->handleParameter_1(line.data(), OutText(reconnect));
            device_->handleConfigSet(user, line.data());
        });
    }

    void stream() {
        const unsigned int user = uid();
        OwnedText status;
        OwnedText uri;
        stepUnderShortage([&] {
            device_->HandleInit(user);
            device_->syncProfileToken_1(user);
            device_->buildCgiStreamGet(user, nullptr, OutText(status));
            device_->buildCgiGetStreamUri(user, nullptr, OutText(uri));
        });
    }

    /// The host lets the object go and makes a new one for the same device.
    void renew() {
        end();
        auto next = boost::make_shared<Device>();
        next->answers = device_->answers;
        next->set_server_address("camera");
        device_ = next;
    }

    Input& input_;
    boost::shared_ptr<Device> device_;
    unsigned int shortage_ = 0;
    bool staysOut_ = false;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Input input(data, size);
    Session session(input);
    for (int steps = 0; steps < kMostSteps && !input.empty(); ++steps)
        session.step();
    session.end();
    return 0;
}
