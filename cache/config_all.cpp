// The whole configuration in one text.

#include "cache/cache_traces.h"
#include "cache/joined_answer.h"
#include "koine/BaseRequest.h"
#include "text/owned_text.h"

#include <utility>

using namespace koine;

int BaseRequest::getCacheConfigAll(unsigned int uid, int /*mode*/, char** answer) {
    using Get = int (BaseRequest::*)(unsigned int, int, const char*, const char*, char**);
    constexpr Get kParts[] = {
        &BaseRequest::getCacheConfigMedia,  &BaseRequest::getCacheConfigVideo,
        &BaseRequest::getCacheConfigCamera, &BaseRequest::getCacheConfigNotification,
        &BaseRequest::getCacheConfigMisc,
    };
    JoinedAnswer joined(JoinedAnswer::SeparatedFrom::text);
    int result = joined.create() ? kOk : kNoResource;
    for (const Get get : kParts) {
        if (result != kOk)
            break;
        OwnedText part;
        result = (this->*get)(uid, 0, nullptr, nullptr, OutText(part));
        if (result == kOk && part && joined.append(std::move(part)) != JoinedAnswer::Outcome::joined)
            result = kNoResource;
    }
    if (result != kOk)
        cache_trace::notJoined(__LINE__, result, static_cast<int>(uid));
    if (answer != nullptr)
        *answer = joined.release(); // also after a failure: what was joined so far
    return result;
}
