// SPDX-License-Identifier: MIT
// A task that does what requests ask of it. Its argument, when it is one word, is done at the
// start: "fail" ends it with status 3.
#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <string>

#include <fcntl.h>
#include <unistd.h>

#include "kelvane.h"
#include "protocol.h"

namespace {

protocol::Report heard;
int next_event, next_message;
std::string words;

int number_in(const void *data) {
    int number = 0;
    std::memcpy(&number, data, sizeof number);
    return number;
}

void check_order(int number, int &next) {
    heard.disorder += (number & 0xFFFF) != (next & 0xFFFF);
    ++next;
}

int send_messages(int task, int count) {
    int sent = 0;
    for (int i = 0; i < count; ++i)
        sent += SendMessageTo(task, protocol::numbered_message, &i, sizeof i);
    return sent;
}

int send_large_messages(int task, int count) {
    static char data[65536];
    for (heard.large_taken = 0; heard.large_taken < count; ++heard.large_taken) {
        std::memcpy(data, &heard.large_taken, sizeof heard.large_taken);
        if (!SendMessageTo(task, protocol::numbered_message, data, sizeof data)) break;
    }
    return 1;
}

int ask_back(int task) {
    char data[] = "abc";
    return SendRequestTo(task, protocol::reverse, data, 3, 3, 2000) == 3 && data[0] == 'c';
}

int fill(int grey) {
    FillArea(0, 0, ScreenWidth(), ScreenHeight(), grey * 0x010101);
    FullUpdate();
    return ScreenWidth();
}

int answer(int request, void *data, int size, int sender) {
    auto *bytes = static_cast<char *>(data);
    switch (request) {
    case protocol::reverse:
        std::reverse(bytes, bytes + size);
        return size;
    case protocol::sleep:
        usleep(static_cast<useconds_t>(number_in(data)) * 1000);
        return 1;
    case protocol::die:
        _exit(0);
    case protocol::report:
        std::memcpy(data, &heard, sizeof heard);
        return 1;
    case protocol::flood:
        return send_messages(sender, number_in(data));
    case protocol::flood_large:
        return send_large_messages(sender, number_in(data));
    case protocol::words:
        std::memcpy(data, words.data(), words.size());
        return static_cast<int>(words.size());
    case protocol::shade:
        return fill(number_in(data));
    case protocol::listen:
        return number_in(data) < 0 ? SetRequestListener(-number_in(data), LISTENER_REMOVE, nullptr)
                                   : SetRequestListener(number_in(data), 0, answer);
    case protocol::ask_back:
        return ask_back(sender);
    case protocol::is_open:
        return fcntl(number_in(data), F_GETFD) >= 0;
    case protocol::is_set:
        return std::getenv(static_cast<const char *>(data)) != nullptr;
    default:
        return 1000 + request;
    }
}

int take_message(int request, void *data, int, int) {
    if (request != protocol::numbered_message) return 0;
    ++heard.messages;
    check_order(number_in(data), next_message);
    return 0;
}

int handler(int type, int par1, int) {
    switch (type) {
    case EVT_INIT:
        for (int request = 1; request <= protocol::last; ++request)
            SetRequestListener(request, 0, answer);
        SetMessageHandler(take_message);
        return 1;
    case EVT_SHOW:
        FullUpdate();
        return 1;
    case EVT_FOREGROUND:
        return ++heard.foregrounds;
    case EVT_BACKGROUND:
        return ++heard.backgrounds;
    case 95:
        ++heard.updates_checked;
        return 0;
    case EVT_KEYPRESS:
        return heard.last_input = par1;
    case protocol::slow_event:
        FullUpdate(); // pauses that count on any clock
        [[fallthrough]];
    case protocol::numbered_event:
        ++heard.events;
        check_order(par1, next_event);
        return 1;
    case protocol::event_back:
        return SendEventSyncTo(par1, protocol::numbered_event, 0, 0);
    default:
        return 0;
    }
}

} // namespace

int main(int argc, char **argv) {
    if (argc == 2 && std::strcmp(argv[1], "fail") == 0) return 3;
    for (int i = 0; i < argc; ++i) words.append(argv[i]).push_back('\0');
    KelvaneMain(handler);
    return 1;
}
