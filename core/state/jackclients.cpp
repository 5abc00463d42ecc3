#include "jackclients.h"

#ifdef __linux__

#include <array>
#include <atomic>
#include <cstdarg>
#include <dlfcn.h>
#include <mutex>

// As JACK's headers have it; the program itself knows nothing of JACK.
extern "C" {
struct _jack_client;
struct _jack_port;
using JackShutdownCallback = void (*)(void*);
}

namespace {

constexpr int optionServerName = 0x04; // JackServerName
constexpr int statusFailure = 0x01;    // JackFailure
constexpr int statusNoServer = 0x10;   // JackServerFailed

// JACK's own function of a name; null where there is no JACK.
template <class Function> Function* next(const char* name) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

// A client of this process. Its loss is told on a thread that JACK may cancel at any instruction: what is
// done there takes no lock.
struct Client {
    std::atomic<_jack_client*> handle{nullptr};
    std::atomic<JackShutdownCallback> told{nullptr}; // whom the owner wants told
    std::atomic<void*> argument{nullptr};
};

std::array<Client, 64> clients; // a client beyond these is passed on and not watched
std::atomic<bool> serverLost{false};
// One request of this process at a time: a server that is busy with one client's end or start and another
// client of the same process's at once has been seen to wait for both for ever.
std::mutex requests;

Client* find(const _jack_client* handle) {
    for (Client& client : clients) {
        if (client.handle.load() == handle) {
            return &client;
        }
    }
    return nullptr;
}

bool anyOpen() {
    for (const Client& client : clients) {
        if (client.handle.load() != nullptr) {
            return true;
        }
    }
    return false;
}

void onShutdown(void* self) {
    serverLost.store(true);
    const auto& client = *static_cast<Client*>(self);
    if (JackShutdownCallback told = client.told.load()) {
        told(client.argument.load());
    }
}

} // namespace

extern "C" {

_jack_client* jack_client_open(const char* name, int options, int* status, ...) {
    static auto* const pass = next<_jack_client*(const char*, int, int*, ...)>("jack_client_open");
    static auto* const watch = next<void(_jack_client*, JackShutdownCallback, void*)>("jack_on_shutdown");
    const std::lock_guard locked(requests);
    if (pass == nullptr || watch == nullptr || (serverLost.load() && anyOpen())) {
        if (status != nullptr) {
            *status = statusFailure | statusNoServer;
        }
        return nullptr;
    }
    serverLost.store(false);
    std::va_list arguments;
    va_start(arguments, status);
    const char* server = (options & optionServerName) != 0 ? va_arg(arguments, const char*) : nullptr;
    va_end(arguments);
    _jack_client* handle = pass(name, options, status, server);
    if (handle == nullptr) {
        // One that got half-way lost the server.
        serverLost.store(true);
    } else if (Client* client = find(nullptr)) {
        client->told.store(nullptr);
        client->handle.store(handle);
        watch(handle, &onShutdown, client);
    }
    return handle;
}

void jack_on_shutdown(_jack_client* handle, JackShutdownCallback told, void* argument) {
    static auto* const pass = next<void(_jack_client*, JackShutdownCallback, void*)>("jack_on_shutdown");
    if (Client* client = handle != nullptr ? find(handle) : nullptr) {
        client->argument.store(argument);
        client->told.store(told);
    } else if (pass != nullptr) {
        pass(handle, told, argument);
    }
}

int jack_client_close(_jack_client* handle) {
    static auto* const pass = next<int(_jack_client*)>("jack_client_close");
    const std::lock_guard locked(requests);
    if (pass != nullptr) {
        pass(handle);
    }
    if (Client* client = handle != nullptr ? find(handle) : nullptr) {
        client->handle.store(nullptr);
    }
    return 0;
}

int jack_activate(_jack_client* handle) {
    static auto* const pass = next<int(_jack_client*)>("jack_activate");
    const std::lock_guard locked(requests);
    return pass != nullptr ? pass(handle) : -1;
}

int jack_deactivate(_jack_client* handle) {
    static auto* const pass = next<int(_jack_client*)>("jack_deactivate");
    const std::lock_guard locked(requests);
    if (pass != nullptr) {
        pass(handle);
    }
    return 0;
}

int jack_port_unregister(_jack_client* handle, _jack_port* port) {
    static auto* const pass = next<int(_jack_client*, _jack_port*)>("jack_port_unregister");
    if (pass != nullptr) {
        pass(handle, port);
    }
    return 0;
}

} // extern "C"

#endif

void guardJackClients() {}
