// The registry of stream users.

#include "koine/StreamIDCenter.h"
#include "stream/stream_traces.h"

#include <boost/make_shared.hpp>

#include <utility>

StreamIDCenter::StreamIDCenter() = default;
StreamIDCenter::~StreamIDCenter() = default;

boost::shared_ptr<StreamIDClient>& StreamIDCenter::get_streamid_client(unsigned int uid) {
    const boost::mutex::scoped_lock lock(registryLock_);
    const auto place = clients_.lower_bound(uid);
    if (place != clients_.end() && place->first == uid)
        return place->second;
    // The client first: when memory is short, the registry stays as it was and never holds an empty entry.
    auto client = boost::make_shared<StreamIDClient>();
    boost::shared_ptr<StreamIDClient>& kept = clients_.emplace_hint(place, uid, std::move(client))->second;
    koine::stream_trace::clientMade(__LINE__, static_cast<int>(uid));
    return kept;
}

boost::shared_ptr<StreamIDClient> StreamIDCenter::get_first_streamid_client() {
    return clients_.begin()->second;
}
