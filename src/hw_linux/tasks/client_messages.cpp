// SPDX-License-Identifier: MIT
// What tasks send each other, over connections that the manager handed out.
#include <algorithm>
#include <array>

#include <poll.h>
#include <sys/epoll.h>

#include "hw_linux/device.h"
#include "hw_linux/tasks/client.h"
#include "hw_linux/tasks/real_time.h"

namespace hw::tasks {
namespace {

// More stays with those who send it, unless this task waits for an answer, or for room at another
// one, which may itself be waiting for room here. The answer comes behind what was sent before it.
constexpr size_t most_bytes = size_t{1} << 20, most_bytes_while_waiting = size_t{64} << 20,
                 most_bytes_of_awaited = size_t{256} << 20;
constexpr int most_frames_at_once = 64; // from one task
constexpr size_t most_answering = 16;
constexpr int room_ms = 500;
constexpr int slice_ms = 10;

size_t weight_of(const Frame &frame) {
    return sizeof(Waiting) + frame.data.size();
}

bool is_for_tasks(Kind kind) {
    return kind >= Kind::event && kind < Kind::count;
}

} // namespace

void Client::take_peer(Arrival arrival) {
    if (!arrival.descriptor) return;
    peers_.push_back({arrival.frame.numbers[0], std::move(arrival.descriptor)});
    watch(peers_.back().link);
}

// The first one to a task carries everything that goes there, so that it keeps its order.
const Descriptor *Client::link_to(int task, int64_t end_ms) {
    const auto find = [&]() -> const Descriptor * {
        for (const Peer &peer : peers_)
            if (peer.task == task) return &peer.link;
        return nullptr;
    };
    if (const Descriptor *known = find()) return known;
    Arrival made;
    Frame question{.kind = Kind::connect};
    question.numbers[0] = made.frame.numbers[0] = task;
    const auto result = ask(std::move(question), nullptr, &made.descriptor, end_ms);
    if (!result || *result != task) return nullptr;
    take_peer(std::move(made));
    return find();
}

void Client::drop_peer(int number) {
    const auto peer = std::find_if(peers_.begin(), peers_.end(),
                                   [=](const Peer &p) { return p.link.get() == number; });
    if (peer == peers_.end()) return;
    for (Awaited *awaited : awaited_)
        if (awaited->task == peer->task) awaited->broken = true;
    peers_.erase(peer);
}

bool Client::send(int task, const Frame &frame, int64_t end_ms) {
    if (task <= 0) return false;
    if (task == task_) return deliver_here(frame);
    const int64_t end = std::min(real_time_ms() + room_ms, end_ms);
    int breaks = 0;
    while (breaks < 2) {
        const Descriptor *link = link_to(task, end_ms);
        if (!link) return false;
        switch (send_frame(*link, frame)) {
        case Sent::yes:
            return true;
        case Sent::broken:
            ++breaks;
            drop_peer(link->get());
            break;
        case Sent::no_room:
            if (real_time_ms() >= end) return false;
            pollfd wait = {link->get(), POLLOUT, 0};
            poll(&wait, 1, slice_ms);
            ++waits_;
            take_in(0);
            --waits_;
        }
    }
    return false;
}

bool Client::deliver_here(const Frame &frame) {
    if (inbox_bytes_ > most_bytes) return false;
    sort_in(task_, Frame(frame));
    return true;
}

std::optional<int> Client::exchange(int task, Frame &frame, int timeout_ms) {
    const int64_t end = real_time_ms() + timeout_ms;
    frame.serial = ++serial_;
    Awaited awaited{frame.serial, task, &frame, false, false};
    if (!send(task, frame, end)) return std::nullopt;
    awaited_.push_back(&awaited);
    while (!awaited.arrived && !awaited.broken) {
        const int64_t left = end - real_time_ms();
        if (left <= 0) break;
        ++waits_;
        take_in(static_cast<int>(std::min<int64_t>(left, slice_ms)));
        --waits_;
        answer_what_cannot_wait();
    }
    std::erase(awaited_, &awaited);
    if (!awaited.arrived) return std::nullopt;
    return frame.numbers[0];
}

void Client::take_in(int timeout_ms) {
    std::array<epoll_event, 16> events{};
    const int count = epoll_wait(poll_.get(), events.data(), events.size(), timeout_ms);
    bool has_read = count <= 0;
    for (int i = 0; i < count; ++i)
        if (take_from(events[static_cast<size_t>(i)].data.fd)) has_read = true;
    if (!has_read) poll(nullptr, 0, timeout_ms); // what is there has to stay with its senders
    if (!manager_) connect();
}

// False when nothing may be read there now.
bool Client::take_from(int number) {
    if (number != manager_.get()) return take_from_peer(number);
    take_from_manager();
    return true;
}

void Client::take_from_manager() {
    Arrival arrival;
    switch (receive_frame(manager_, arrival)) {
    case Received::nothing:
        return;
    case Received::frame:
        if (arrival.frame.kind == Kind::peer) take_peer(std::move(arrival));
        return;
    case Received::foreign_version:
    case Received::broken:
        lose_manager();
    }
}

bool Client::awaits(int task) const {
    return std::any_of(awaited_.begin(), awaited_.end(),
                       [=](const Awaited *awaited) { return awaited->task == task; });
}

bool Client::has_room_from(int task) const {
    if (waits_ == 0) return inbox_bytes_ <= most_bytes;
    return inbox_bytes_ <= (awaits(task) ? most_bytes_of_awaited : most_bytes_while_waiting);
}

// What a task sent before it ended still arrives.
bool Client::take_from_peer(int number) {
    for (int i = 0; i < most_frames_at_once; ++i) {
        const auto peer = std::find_if(peers_.begin(), peers_.end(),
                                       [=](const Peer &p) { return p.link.get() == number; });
        if (peer == peers_.end()) return true;
        if (!has_room_from(peer->task)) return i > 0;
        Arrival arrival;
        const Received received = receive_frame(peer->link, arrival);
        if (received == Received::nothing) return true;
        if (received != Received::frame || !is_for_tasks(arrival.frame.kind)) {
            drop_peer(number);
            return true;
        }
        const bool is_answer = arrival.frame.kind == Kind::answer;
        sort_in(peer->task, std::move(arrival.frame));
        if (is_answer) return true; // somebody waits for it, and what follows can wait
    }
    return true;
}

void Client::sort_in(int sender, Frame &&frame) {
    if (frame.kind != Kind::answer) {
        inbox_bytes_ += weight_of(frame);
        return inbox_.push_back({sender, std::move(frame)});
    }
    for (Awaited *awaited : awaited_) {
        if (awaited->serial != frame.serial || awaited->task != sender) continue;
        *awaited->answer = std::move(frame);
        awaited->arrived = true;
        return;
    }
}

Waiting Client::take_out(size_t place) {
    Waiting taken = std::move(inbox_[place]);
    inbox_.erase(inbox_.begin() + static_cast<std::ptrdiff_t>(place));
    inbox_bytes_ -= weight_of(taken.frame);
    return taken;
}

int Client::hand_on() {
    take_in(0);
    int handled = 0;
    for (size_t left = inbox_.size(); left > 0 && !inbox_.empty(); --left, ++handled) {
        Waiting first = take_out(0);
        if (hand_on(first)) continue;
        inbox_bytes_ += weight_of(first.frame);
        inbox_.push_front(std::move(first));
        break;
    }
    return handled;
}

// False when there is no room for it.
bool Client::hand_on(Waiting &waiting) {
    Frame &frame = waiting.frame;
    const auto &n = frame.numbers;
    switch (frame.kind) {
    case Kind::event:
        return hooks.task_event(n[0], n[1], n[2]);
    case Kind::event_at_once:
        hooks.task_event_at_once(n[0], n[1], n[2]);
        send_answer(waiting, 1, {});
        break;
    case Kind::message:
        hooks.task_message(n[0], frame.data.data(), static_cast<int>(frame.data.size()),
                           waiting.sender);
        break;
    case Kind::request:
        answer(waiting);
        break;
    case Kind::input:
        push_input(n[0], n[1], n[2], n[3]);
        break;
    default:
        break;
    }
    return true;
}

// A task that is waited for may itself wait until this one has handled an event.
bool Client::cannot_wait(const Waiting &waiting) const {
    return waiting.frame.kind == Kind::request ||
           (waiting.frame.kind == Kind::event_at_once && awaits(waiting.sender));
}

void Client::answer_what_cannot_wait() {
    while (answering_ < most_answering && awaited_.size() <= most_answering) {
        const auto found = std::find_if(inbox_.begin(), inbox_.end(),
                                        [this](const Waiting &w) { return cannot_wait(w); });
        if (found == inbox_.end()) return;
        Waiting first = take_out(static_cast<size_t>(found - inbox_.begin()));
        hand_on(first);
    }
}

void Client::answer(Waiting &waiting) {
    Frame &frame = waiting.frame;
    const int size = static_cast<int>(frame.data.size());
    const auto outsize = static_cast<size_t>(frame.numbers[1]);
    std::vector<uint8_t> data = std::move(frame.data);
    data.resize(std::max<size_t>({data.size(), outsize, 1}));
    ++answering_;
    const int result = hooks.task_request(frame.numbers[0], data.data(), size, waiting.sender);
    --answering_;
    if (frame.numbers[2] == 0) return;
    data.resize(outsize);
    send_answer(waiting, result, std::move(data));
}

void Client::send_answer(const Waiting &waiting, int result, std::vector<uint8_t> data) {
    Frame answer{Kind::answer, waiting.frame.serial, {result}, std::move(data)};
    if (waiting.sender == task_)
        sort_in(task_, std::move(answer));
    else
        send(waiting.sender, answer);
}

} // namespace hw::tasks
