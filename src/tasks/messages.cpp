// SPDX-License-Identifier: MIT
// Events, messages and requests to other tasks, and the listeners for those that come from them.
#include "tasks/messages.h"

#include <algorithm>
#include <vector>

#include "ground/guard.h"
#include "hw.h"
#include "kelvane/tasks.h"

namespace {

constexpr int system_task = 0;
constexpr int accepted = 0;

struct RequestListener {
    int request;
    kv_requestlistener listener;
};

std::vector<RequestListener> request_listeners; // one for a code
kv_messagehandler msgproc;

auto entry_of(int request) {
    return std::find_if(request_listeners.begin(), request_listeners.end(),
                        [=](const RequestListener &entry) { return entry.request == request; });
}

void remove_listener(int request) {
    const auto entry = entry_of(request);
    if (entry != request_listeners.end()) request_listeners.erase(entry);
}

void put_listener(int request, kv_requestlistener listener) {
    const auto entry = entry_of(request);
    if (entry != request_listeners.end())
        entry->listener = listener;
    else
        request_listeners.push_back({request, listener});
}

int send_request(int task, int request, void *data, int size, int outsize, int timeout,
                 int nowait) {
    if (!MultitaskingSupported()) return -1;
    return hw_task_sendrequest(task, request, data, size, outsize, timeout, nowait);
}

} // namespace

int tasks::answer_request(int request, void *data, int size, int sender) {
    const auto entry = entry_of(request);
    return entry == request_listeners.end() ? -1 : entry->listener(request, data, size, sender);
}

void tasks::take_message(int request, void *data, int size, int sender) {
    if (msgproc) msgproc(request, data, size, sender);
}

void tasks::reset() {
    request_listeners.clear();
    msgproc = nullptr;
}

int SendEventTo(int task, int type, int par1, int par2) {
    return MultitaskingSupported() && hw_task_sendevent(task, type, par1, par2) == accepted;
}

int SendEventSyncTo(int task, int type, int par1, int par2) {
    return MultitaskingSupported() && hw_task_sendevent_sync(task, type, par1, par2) == accepted;
}

int SendMessageTo(int task, int request, const void *data, int size) {
    return MultitaskingSupported() && hw_task_message(task, request, data, size) == accepted;
}

int SetMessageHandler(kv_messagehandler handler) {
    if (!MultitaskingSupported()) return 0;
    msgproc = handler;
    return 1;
}

int SetRequestListener(int request, int flags, kv_requestlistener listener) {
    const bool removes = (flags & LISTENER_REMOVE) != 0;
    if (!MultitaskingSupported() || (!removes && !listener)) return -1;
    if (hw_task_setrequestlistener(request, flags) != accepted) return -1;
    return ground::guarded(-1, [&] {
        if (removes)
            remove_listener(request);
        else
            put_listener(request, listener);
        return accepted;
    });
}

int SendRequest(int request, void *data, int size, int outsize, int timeout) {
    return send_request(system_task, request, data, size, outsize, timeout, 0);
}

int SendRequestNoWait(int request, void *data, int size, int outsize) {
    return send_request(system_task, request, data, size, outsize, 0, 1);
}

int SendRequestTo(int task, int request, void *data, int size, int outsize, int timeout) {
    return send_request(task, request, data, size, outsize, timeout, 0);
}

int SendRequestToNoWait(int task, int request, void *data, int size, int outsize) {
    return send_request(task, request, data, size, outsize, 0, 1);
}
