// Answers every question with the proxies that the environment lists, with blanks between them.
#include <cstdlib>
#include <cstring>
#include <string>

extern "C" {

void* px_proxy_factory_new() {
    return std::malloc(1);
}

char** px_proxy_factory_get_proxies(void* /*factory*/, const char* /*url*/) {
    std::string list = std::getenv("LISTED_PROXIES");
    auto** found = static_cast<char**>(std::calloc(list.size() + 1, sizeof(char*)));
    int count = 0;
    for (char* proxy = std::strtok(list.data(), " "); proxy != nullptr; proxy = std::strtok(nullptr, " "))
        found[count++] = strdup(proxy);
    return found;
}

void px_proxy_factory_free_proxies(char** proxies) {
    for (char** proxy = proxies; *proxy != nullptr; ++proxy)
        std::free(*proxy);
    std::free(proxies);
}

void px_proxy_factory_free(void* factory) {
    std::free(factory);
}
}
