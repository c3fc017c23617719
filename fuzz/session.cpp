// A whole session: the bytes choose what the host does, what the device answers and when memory runs out.
#include "fuzz/fuzz_device.h"
#include "tests/support/failing_allocations.h"

#include <new>

using namespace koine;
using namespace koine::fuzz;

namespace {

constexpr int kMostSteps = 64;

class Session {
public:
    explicit Session(Input& input) : input_(input), device_(boost::make_shared<Device>()) {
        answerAsCamera(*device_);
        device_->set_server_address("camera");
    }

    void step() {
        switch (input_.byte() % 9U) {
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
            return device_->init(uid(), input_.text().c_str());
        case 4:
            return request();
        case 5: {
            std::string line = input_.text();
            device_->requestHttpData(uid(), line.data(), nullptr, nullptr);
            device_->GetCgiMapStr(uid(), "Product-Name");
            return;
        }
        case 6:
            shortage_ = input_.byte();
            return;
        case 7:
            return refresh();
        default:
            device_->close();
            device_->testOK(nullptr, 0, nullptr, nullptr);
        }
    }

private:
    unsigned int uid() { return input_.byte() % 4U; }

    void request() {
        const unsigned int user = uid();
        std::string line = input_.text();
        char* answer = nullptr;
        {
            const test::FailAllocations shortage(shortage_);
            shortage_ = 0;
            device_->requestHttpStr(user, line.data(), nullptr, nullptr, &answer);
        }
        device_->freeData(answer);
    }

    void refresh() {
        const unsigned int user = uid();
        device_->getCacheLogin(user, 1, nullptr, nullptr);
        device_->getCacheConfigCamera(user, 1, nullptr, "Camera.*", nullptr);
        device_->getCacheConfigMedia(user, 1, nullptr, nullptr, nullptr);
    }

    Input& input_;
    boost::shared_ptr<Device> device_;
    unsigned int shortage_ = 0;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Input input(data, size);
    Session session(input);
    for (int steps = 0; steps < kMostSteps && !input.empty(); ++steps)
        session.step();
    return 0;
}
