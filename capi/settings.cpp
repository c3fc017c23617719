// Settings of the process, for hosts in C.

#include "default_platform/host_settings.h"
#include "koine/koine.h"

const char* koine_version(void) { return KOINE_VERSION; }

void koine_trace_to(koine_trace_sink sink, void* context) { koine::traceToCallback(sink, context); }

void koine_trace_to_standard_error(void) { koine::traceToStandardError(); }

void koine_set_request_time_limit(unsigned int milliseconds) { koine::setRequestTimeLimit(milliseconds); }

void koine_set_connect_time_limit(unsigned int milliseconds) { koine::setConnectTimeLimit(milliseconds); }

void koine_set_tls_verification(int verify) { koine::setTlsVerification(verify != 0); }

int koine_set_tls_authority_file(const char* path) { return koine::setTlsAuthorityFile(path); }

int koine_set_tls_pinned_key(const char* key) { return koine::setTlsPinnedKey(key); }
