/// @file
/// What is run while memory runs out.
#pragma once

#include "koine/BaseRequest.h"

#include <boost/shared_ptr.hpp>

#include <new>
#include <vector>

namespace koine::torture {

constexpr unsigned int kUid = 1;
constexpr unsigned int kOther = 2;
/// Too long for a string object to keep without an allocation.
constexpr const char* kLong = "a text that is too long to be kept inside a string object";

/// A request object and what it said.
struct Subject {
    boost::shared_ptr<BaseRequest> device;
    std::vector<int> results;
    unsigned int missingTexts = 0; ///< answers that had no text at all
    unsigned int wrongTexts = 0;   ///< failures with another text than the one that belongs to the result

    /// Sends one line and looks at the answer.
    void ask(unsigned int uid, const char* line);
};

/// What a run settles for good, for the answers that are compared afterwards.
enum class Decides {
    nothing,
    categories,    ///< the only attempt to learn them, or a refresh that is one more
    qualityBounds, ///< the host's own take the place of the device's
};

struct Scenario {
    const char* name;
    /// Makes the object with a device behind it; the host's memory is there.
    boost::shared_ptr<BaseRequest> (*make)();
    /// Brings it where the scenario begins.
    void (*prepare)(Subject& subject);
    /// The calls under shortage. Results are noted.
    void (*run)(Subject& subject);
    /// Whether `run` may end with std::bad_alloc: single steps may, the host's entry points may not.
    bool mayThrow;
    Decides decides = Decides::nothing;
};

/// A device class whose steps answer from a table: the core alone.
boost::shared_ptr<BaseRequest> makeTabled();
/// One of the maker's own, of the Pell kind: its categories are adjusted.
boost::shared_ptr<BaseRequest> makePell();
/// A product that has no capability request.
boost::shared_ptr<BaseRequest> makeMachine();
/// Tells about its channels in a second answer.
boost::shared_ptr<BaseRequest> makeVideoServer();
/// What `openDevice` makes, with a client that answers from a table.
boost::shared_ptr<BaseRequest> makeDialect();

/// The object has learned the device and serves one stream.
void warm(Subject& subject);
void nothing(Subject& subject);

/// One operation with arguments of ours.
template <typename Object>
using OperationOn = void (*)(Object& object);

/// What a host attaches to a stream user.
class Attached : public IBase {
public:
    virtual ~Attached() = default;
};

/// Calls each operation, whether or not the one before it got its memory.
template <typename Object, typename Operations>
void callEach(const Operations& operations, Object& object) {
    for (const auto operation : operations) {
        try {
            operation(object);
        } catch (const std::bad_alloc&) {
            continue; // that one could not be done; nothing may be lost or held
        }
    }
}

void settings(Subject& subject);       // object_operations.cpp
void reads(Subject& subject);          //
void hostOperations(Subject& subject); //
void conversions(Subject& subject);    //
void streamUser(Subject& subject);     // stream_operations.cpp
void streamUserReads(Subject& subject);
void registry(Subject& subject);
void opening(Subject& subject); // device_operations.cpp
void dialectOperations(Subject& subject);
void requestHelper(Subject& subject);
void cInterface(Subject& subject); // c_operations.cpp

const std::vector<Scenario>& scenarios();

} // namespace koine::torture
