/* Compiled as C only: the header must be plain C, and the options must begin as documented. */

#include <koine/koine.h>
#include <koine/koine.h> /* a second time does no harm */

koine_options koine_test_options_of_c(void);
int koine_test_options_are_initial(void);

koine_options koine_test_options_of_c(void) {
    koine_options options = KOINE_OPTIONS;
    options.rtsp_port = 8554;
    return options;
}

int koine_test_options_are_initial(void) {
    const koine_options options = KOINE_OPTIONS;
    return options.size == sizeof options && options.username == NULL && options.password == NULL &&
           options.vendor == NULL && options.uri_pattern == NULL && options.rtsp_port == 0 &&
           options.credentials_in_uri == 0 && options.connections == 0;
}
