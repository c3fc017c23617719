// The fuzz targets answer for the device themselves: nothing goes over a network.
#include "platform/http_client.h"

IHttpClient* CreateIHttpClient() { return nullptr; }
