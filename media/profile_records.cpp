#include "media/profile_records.h"

#include "cache/key_map.h"
#include "media/profile_keys.h"
#include "text/numbers.h"
#include "text/scan.h"
#include "text/words.h"

#include <array>

namespace koine {
namespace {

constexpr float kQualityNotGiven = -1.0F;

/// Encodings that video keys can express.
constexpr std::array<const char*, 3> kEncodings = {"JPEG", "MPEG4", "H264"};

struct NumberField {
    EncoderKey key;
    int _tagProfileMap::*field;
};
constexpr std::array<NumberField, 4> kNumberFields = {{
    {EncoderKey::width, &_tagProfileMap::width},
    {EncoderKey::height, &_tagProfileMap::height},
    {EncoderKey::frameRateLimit, &_tagProfileMap::frameRateLimit},
    {EncoderKey::bitrateLimit, &_tagProfileMap::bitrateLimit},
}};

/// Any other word leaves the record's encoding as it is.
void takeEncoding(_tagProfileMap& record, std::string_view word) {
    for (const char* const encoding : kEncodings) {
        if (!startsWithIgnoreCase(word, encoding))
            continue;
        record.encoding = encoding;
        return;
    }
}

bool takeNumber(_tagProfileMap& record, std::string_view item) {
    int profile = 0;
    int value = 0;
    for (const NumberField& number : kNumberFields) {
        if (!scanEncoderItem(item, profile, number.key, into(value)))
            continue;
        record.*number.field = value;
        return true;
    }
    return false;
}

void takeSetting(_tagProfileMap& record, std::string_view item) {
    int profile = 0;
    std::string_view word;
    float quality = 0.0F;
    int length = 0;
    if (scanEncoderItem(item, profile, EncoderKey::encoding, into(word)))
        takeEncoding(record, word);
    else if (takeNumber(record, item))
        return;
    else if (scanEncoderItem(item, profile, EncoderKey::quality, into(quality)))
        record.quality = quality;
    else if (scan(item, kProfilePrefix, into(profile), kEncoderPart, ".", Until{'.', word},
                  suffixOf(EncodingKey::govLength), "=", into(length))) {
        takeEncoding(record, word);
        record.govLength = length;
    }
}

} // namespace

void ProfileRecords::take(std::string_view item) {
    int profile = 0;
    if (scan(item, kProfilePrefix, into(profile)))
        takeSetting(recordOf(profile), item);
}

_tagProfileMap& ProfileRecords::recordOf(int profile) {
    const auto [place, isNew] = records_.try_emplace(profile, _tagProfileMap{});
    _tagProfileMap& record = place->second;
    if (!isNew)
        return record;
    record.quality = kQualityNotGiven;
    if (media_ != nullptr) {
        ProfileKeys keys(ProfileNumber{profile});
        record.width = readInt(entry(*media_, keys.of(EncoderKey::width)));
        record.height = readInt(entry(*media_, keys.of(EncoderKey::height)));
    }
    return record;
}

std::map<int, _tagProfileMap*> ProfileRecords::byProfile() {
    std::map<int, _tagProfileMap*> lent;
    for (auto& [profile, record] : records_)
        lent.emplace_hint(lent.end(), profile, &record);
    return lent;
}

} // namespace koine
