// What a host asks of a request object for one of its users: looked up, then forwarded.

#include "cache/key_map.h"
#include "koine/BaseRequest.h"
#include "stream/required_client.h"
#include "text/owned_text.h"

using namespace koine;

namespace {

/// The user's client, held for the call.
class HeldClient {
public:
    HeldClient(BaseRequest& request, unsigned int uid) : client_(request.get_streamid_client(uid)) {}
    StreamIDClient* operator->() const { return &required(client_); }

private:
    boost::shared_ptr<StreamIDClient> client_;
};

/// The characters of a value that is there and not empty, else null.
const char* valueOrNull(const CgiMap& map, const char* key) {
    const std::string* value = findValue(map, viewOf(key));
    return value == nullptr || value->empty() ? nullptr : value->c_str();
}

} // namespace

void BaseRequest::init(unsigned int uid, const char* text) { HeldClient(*this, uid)->setInitStream(text); }

boost::shared_ptr<IBase> BaseRequest::getIBaseStream(unsigned int uid) {
    return HeldClient(*this, uid)->get_ibase_stream();
}

void BaseRequest::setIBaseStream(unsigned int uid, boost::shared_ptr<IBase> stream) {
    HeldClient(*this, uid)->set_ibase_stream(stream);
}

int BaseRequest::audio_in_live(unsigned int uid) { return HeldClient(*this, uid)->audio_in_live(); }
const char* BaseRequest::profile_token(unsigned int uid) { return HeldClient(*this, uid)->profile_token(); }
int BaseRequest::profile_id(unsigned int uid) { return HeldClient(*this, uid)->profile_id(); }
float BaseRequest::getQualityStep(unsigned int uid) { return HeldClient(*this, uid)->getQualityStep(); }
float BaseRequest::getNowQuality(unsigned int uid) { return HeldClient(*this, uid)->getNowQuality(); }
int BaseRequest::getSettingMaxW(unsigned int uid) { return HeldClient(*this, uid)->getSettingMaxW(); }
int BaseRequest::getSettingMaxH(unsigned int uid) { return HeldClient(*this, uid)->getSettingMaxH(); }
int BaseRequest::strm_setting_no(unsigned int uid) { return HeldClient(*this, uid)->strm_setting_no(); }
int BaseRequest::strm_setting_channel(unsigned int uid) {
    return HeldClient(*this, uid)->strm_setting_channel();
}

const char* BaseRequest::GetStreamMapStr(unsigned int uid, const char* key) {
    return valueOrNull(HeldClient(*this, uid)->stream_setup_map(), key);
}

const char* BaseRequest::GetCgiMapStr(unsigned int uid, const char* key) {
    return valueOrNull(HeldClient(*this, uid)->get_temp_cgicache_map(), key);
}
