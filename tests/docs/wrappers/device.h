/* Included before every block of the documents: where the device of a program is. */
#pragma once

#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#define DOCS_DOCUMENTED_HOST "192.168.0.10"

/* The URL of a document, with the device that is simulated for the block; never freed. */
static inline const char* docsDevice(const char* url) {
    const char* const device = getenv("KOINE_DOCS_DEVICE");
    const char* const host = strstr(url, DOCS_DOCUMENTED_HOST);
    if (device == NULL || host == NULL)
        return url;
    const size_t size = strlen(url) + strlen(device) + 1;
    char* const real = (char*)calloc(1, size);
    if (real == NULL)
        return url;
    snprintf(real, size, "%.*s%s%s", (int)(host - url), url, device, host + strlen(DOCS_DOCUMENTED_HOST));
    return real;
}
