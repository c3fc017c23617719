/// @file
/// The registry of stream users.
#pragma once

#include "koine/StreamIDClient.h"

#include <boost/noncopyable.hpp>
#include <boost/shared_ptr.hpp>
#include <boost/thread/mutex.hpp>

#include <map>

/// Owns the `StreamIDClient` of every uid that was ever named, until it is destroyed itself.
class KOINE_EXPORT StreamIDCenter : private boost::noncopyable {
public:
    StreamIDCenter();
    virtual ~StreamIDCenter();

    /// The client of a uid, created when the uid is new. Any thread; never empty. Copy the pointer before
    /// using the client.
    /// @throws boost::lock_error when the registry cannot be locked
    /// @throws std::bad_alloc when a new client does not fit into memory; the registry is then unchanged
    virtual boost::shared_ptr<StreamIDClient>& get_streamid_client(unsigned int uid);

    /// The client with the smallest uid. Takes no lock and checks nothing: the registry must hold a client.
    virtual boost::shared_ptr<StreamIDClient> get_first_streamid_client();

private:
    boost::mutex registryLock_;
    std::map<unsigned int, boost::shared_ptr<StreamIDClient>> clients_;
};
