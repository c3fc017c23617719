#include "media/encoding_completion.h"

#include "cache/key_map.h"
#include "cache/keys.h"
#include "media/encoding_list.h"
#include "text/numbers.h"
#include "text/tokens.h"

#include <algorithm>

namespace koine {
namespace {

std::string frameRateSuffix(int least, int most) {
    return ":" + numberAsText(least) + "-" + numberAsText(most);
}

} // namespace

EncodingCompletion::EncodingCompletion(MediaMap& media, const CgiMap& capability, AreaRange areas,
                                       int frameRateMin, int frameRateMax)
    : media_(media),
      capability_(capability),
      generalSizes_(findValue(capability, keys::kVideoResolutionNxN)),
      areas_(areas),
      frameRates_(frameRateSuffix(frameRateMin, frameRateMax)) {}

/// The passes follow each other: what ends one of them early does not end the next.
void EncodingCompletion::complete(ProfileKeys& keys, std::string_view encodings) {
    lookUp(keys, encodings);
    for (const Pass pass : {&EncodingCompletion::noteBounds, &EncodingCompletion::narrowSizes,
                            &EncodingCompletion::addFrameRates})
        for (Encoding& encoding : encodings_)
            if (media_.isExhausted() || !(this->*pass)(keys, encoding))
                break;
}

/// The list has them in any order, the map in that of their names.
void EncodingCompletion::lookUp(ProfileKeys& keys, std::string_view encodings) {
    encodings_.clear();
    for (const std::string_view name : Tokens(encodings, kListSeparators)) {
        if (media_.isExhausted())
            return;
        encodings_.emplace_back().name = name;
        media_.note(sizeof(Encoding));
    }
    byName_.clear();
    for (Encoding& encoding : encodings_)
        byName_.push_back(&encoding);
    std::sort(byName_.begin(), byName_.end(),
              [](const Encoding* a, const Encoding* b) { return a->name < b->name; });
    for (Encoding* const encoding : byName_) {
        if (media_.isExhausted())
            return; // no pass will ask for the rest
        EncodingKeys ofEncoding(keys, encoding->name);
        for (unsigned key = 0; key < encoding->entries.size(); ++key)
            encoding->entries[key] = media_.look(ofEncoding.of(static_cast<EncodingKey>(key)));
    }
}

/// @return false when there is no list to be had
bool EncodingCompletion::noteBounds(ProfileKeys& keys, Encoding& encoding) {
    if (!encoding.entry(EncodingKey::sizes).isPresent() && generalSizes_ == nullptr)
        return false;
    const std::string& sizes = setIfAbsent(keys, encoding, EncodingKey::sizes,
                                           generalSizes_ == nullptr ? std::string_view() : *generalSizes_);
    const SizeBounds& bounds = boundsOf(sizes);
    if (bounds.areKnown()) {
        set(keys, encoding, EncodingKey::largestSize, bounds.largest);
        set(keys, encoding, EncodingKey::smallestSize, bounds.smallest);
    }
    return true;
}

/// @return false when there is no list to be had
bool EncodingCompletion::narrowSizes(ProfileKeys& keys, Encoding& encoding) {
    const Entry& sizes = encoding.entry(EncodingKey::sizes);
    if (!sizes.isPresent()) {
        const std::string* ofCodec = sizesOfCodec(encoding.name);
        if (ofCodec == nullptr)
            return false;
        setIfAbsent(keys, encoding, EncodingKey::sizes, *ofCodec);
    }
    const std::string& kept = keptOf(setIfAbsent(keys, encoding, EncodingKey::sizesSrc, sizes.text()));
    if (!kept.empty()) {
        set(keys, encoding, EncodingKey::sizesUi, kept);
        media_.assign(sizes, kept);
    }
    return true;
}

/// An encoding without a list is passed over.
bool EncodingCompletion::addFrameRates(ProfileKeys& keys, Encoding& encoding) {
    const Entry& sizes = encoding.entry(EncodingKey::sizes);
    if (!sizes.isPresent() || encoding.entry(EncodingKey::frameRates).isPresent())
        return true;
    appendToSizes(sizes.text(), frameRates_, work_);
    media_.note(sizes.text().size());
    if (!work_.empty())
        setIfAbsent(keys, encoding, EncodingKey::frameRates, work_);
    return true;
}

const SizeBounds& EncodingCompletion::boundsOf(const std::string& sizes) {
    media_.note(sizes.size());
    if (sizes != lastBounds_.sizes) {
        lastBounds_.sizes = sizes;
        lastBounds_.bounds = sizeBounds(lastBounds_.sizes);
    }
    return lastBounds_.bounds;
}

const std::string& EncodingCompletion::keptOf(const std::string& sizes) {
    media_.note(sizes.size());
    if (sizes != lastKept_.sizes) {
        lastKept_.sizes = sizes;
        keepSizes(lastKept_.sizes, areas_, lastKept_.kept);
    }
    return lastKept_.kept;
}

const std::string* EncodingCompletion::sizesOfCodec(std::string_view encoding) {
    work_.assign("Capability.Video.").append(encoding).append(".Resolution.NxN");
    return findValue(capability_, work_);
}

void EncodingCompletion::set(ProfileKeys& keys, Encoding& encoding, EncodingKey key, std::string_view value) {
    Entry& entry = encoding.entry(key);
    if (entry.isPresent())
        media_.assign(entry, value);
    else
        media_.add(entry, EncodingKeys(keys, encoding.name).of(key), value);
}

std::string& EncodingCompletion::setIfAbsent(ProfileKeys& keys, Encoding& encoding, EncodingKey key,
                                             std::string_view value) {
    Entry& entry = encoding.entry(key);
    if (!entry.isPresent())
        media_.add(entry, EncodingKeys(keys, encoding.name).of(key), value);
    return entry.text();
}

} // namespace koine
