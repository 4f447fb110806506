// SPDX-License-Identifier: MIT
#include "platform/x11/RedirectionWatch.h"

#include <xcb/composite.h>
#include <xcb/record.h>
#include <xcb/xcbext.h>

#include <cstring>
#include <utility>

namespace glimmerpane::x11
{

namespace
{

// The categories of reports (RECORD, section 5, EnableContext).
enum class Category : std::uint8_t {
    FromClient = 1,
    ClientDied = 3,
    StartOfData = 4,
};

using Report = xcb_record_enable_context_reply_t;

/** Whether the report is in this program's byte order. */
bool isReadable(const Report &report)
{
    return report.client_swapped == 0;
}

} // namespace

std::unique_ptr<RedirectionWatch> RedirectionWatch::create(const Connection &owner,
                                                           xcb_window_t window,
                                                           std::function<void()> changed)
{
    auto connection = Connection::open();
    if (!connection) {
        return nullptr;
    }
    const auto base = xcb_get_setup(owner.get())->resource_id_base;
    std::unique_ptr<RedirectionWatch> watch(
        new RedirectionWatch(std::move(*connection), base, window, std::move(changed)));
    return watch->begin() ? std::move(watch) : nullptr;
}

RedirectionWatch::RedirectionWatch(Connection connection, std::uint32_t owner, xcb_window_t window,
                                   std::function<void()> changed)
    : connection_(std::move(connection))
    , owner_(owner)
    , window_(window)
    , changed_(std::move(changed))
    , notifier_(connection_.fileDescriptor(), QSocketNotifier::Read)
{
    QObject::connect(&notifier_, &QSocketNotifier::activated, &notifier_, [this] { read(); });
}

/** The connection serves nothing else: a recording one gets no other replies. */
bool RedirectionWatch::begin()
{
    auto *const connection = connection_.get();
    const auto *record = xcb_get_extension_data(connection, &xcb_record_id);
    const auto *composite = xcb_get_extension_data(connection, &xcb_composite_id);
    if (record == nullptr || record->present == 0 || composite == nullptr
        || composite->present == 0) {
        return false;
    }
    compositeOpcode_ = composite->major_opcode;
    xcb_record_range_t range{};
    range.ext_requests = {
        .major = {.first = compositeOpcode_, .last = compositeOpcode_},
        .minor = {.first = XCB_COMPOSITE_REDIRECT_WINDOW, .last = XCB_COMPOSITE_UNREDIRECT_WINDOW}};
    range.client_died = 1;
    const xcb_record_client_spec_t everybody = XCB_RECORD_CS_ALL_CLIENTS;
    const auto context = connection_.newId();
    const auto created
        = xcb_record_create_context_checked(connection, context, 0, 1, 1, &everybody, &range);
    if (!connection_.check(created, "RecordCreateContext")) {
        return false;
    }
    const auto enabled = xcb_record_enable_context(connection, context);
    recording_ = enabled.sequence;
    const Reply<Report> first(xcb_record_enable_context_reply(connection, enabled, nullptr));
    return first && first->category == std::uint8_t(Category::StartOfData);
}

void RedirectionWatch::read()
{
    const bool hadViewers = hasViewers();
    void *reply = nullptr;
    xcb_generic_error_t *error = nullptr;
    while (xcb_poll_for_reply(connection_.get(), recording_, &reply, &error) != 0) {
        const Reply<Report> report(static_cast<Report *>(reply));
        const Reply<xcb_generic_error_t> refusal(error);
        if (!report) { // the server is gone
            notifier_.setEnabled(false);
            break;
        }
        note(*report);
    }
    if (hadViewers != hasViewers()) {
        changed_();
    }
}

void RedirectionWatch::note(const Report &report)
{
    const auto client = report.xid_base;
    if (report.category == std::uint8_t(Category::ClientDied)) {
        viewers_.erase(client);
        return;
    }
    if (report.category != std::uint8_t(Category::FromClient) || client == owner_
        || !isReadable(report)) {
        return;
    }
    // The requests themselves; RedirectWindow and UnredirectWindow have the same fields.
    const auto *next = xcb_record_enable_context_data(&report);
    const auto *end = next + xcb_record_enable_context_data_length(&report);
    xcb_composite_redirect_window_request_t request;
    while (end - next >= std::ptrdiff_t(sizeof request)) {
        std::memcpy(&request, next, sizeof request);
        const std::size_t size = std::size_t(request.length) * 4;
        if (size == 0) {
            return; // a length of the kind that these requests never need
        }
        next += size < std::size_t(end - next) ? size : std::size_t(end - next);
        if (request.window != window_) {
            continue;
        }
        if (request.minor_opcode == XCB_COMPOSITE_REDIRECT_WINDOW) {
            viewers_.insert(client);
        } else if (const auto viewer = viewers_.find(client);
                   request.minor_opcode == XCB_COMPOSITE_UNREDIRECT_WINDOW
                   && viewer != viewers_.end()) {
            viewers_.erase(viewer);
        }
    }
}

} // namespace glimmerpane::x11
