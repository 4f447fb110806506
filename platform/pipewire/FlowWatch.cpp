// SPDX-License-Identifier: MIT
#include "platform/pipewire/FlowWatch.h"

#include "platform/Log.h"
#include "platform/pipewire/Handles.h"

#include <QSocketNotifier>

#include <spa/param/video/format-utils.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <map>
#include <string_view>
#include <utility>

namespace glimmerpane::pipewire
{

namespace
{

/** A loop that its thread has entered. */
void leaveLoop(pw_loop *loop)
{
    pw_loop_leave(loop);
    pw_loop_destroy(loop);
}

void destroyRegistry(pw_registry *registry)
{
    pw_proxy_destroy(reinterpret_cast<pw_proxy *>(registry));
}

class FlowWatch final : public ViewerWatch
{
public:
    explicit FlowWatch(std::function<void()> news)
        : news_(std::move(news))
        , loop_(pw_loop_new(nullptr))
    {
        pw_loop_enter(loop_.get());
    }
    Q_DISABLE_COPY_MOVE(FlowWatch)
    ~FlowWatch() override { isWorking_ = false; }

    bool connect();
    bool isWorking() const override { return isWorking_; }
    std::optional<bool> isViewed(QSize size) const override;

private:
    struct Node {
        FlowWatch &watch;
        const bool isViewer; ///< of another program
        bool isRunning = false;
        QSize size{}; ///< of its pictures, pixels; empty until that is agreed on
        spa_hook listener{}; ///< used until the proxy is gone
        Handle<pw_proxy, pw_proxy_destroy> proxy{};

        Node(FlowWatch &owner, bool views)
            : watch(owner)
            , isViewer(views)
        {
        }
    };

    static void failed(void *data, std::uint32_t id, int seq, int result, const char *text);
    static void appeared(void *data, std::uint32_t id, std::uint32_t permissions, const char *type,
                         std::uint32_t version, const spa_dict *properties);
    static void disappeared(void *data, std::uint32_t id);
    static void changed(void *data, const pw_node_info *info);
    static void described(void *data, int seq, std::uint32_t parameter, std::uint32_t index,
                          std::uint32_t next, const spa_pod *value);

    void add(std::uint32_t id, bool isViewer);
    void stop();

    const Library library_;
    const std::function<void()> news_;
    bool isWorking_ = true;

    // Destroyed in reverse order.
    Handle<pw_loop, leaveLoop> loop_;
    Handle<pw_context, pw_context_destroy> context_;
    Handle<pw_core, pw_core_disconnect> core_;
    spa_hook coreListener_{};
    spa_hook registryListener_{};
    Handle<pw_registry, destroyRegistry> registry_;
    std::map<std::uint32_t, Node> nodes_;
    std::unique_ptr<QSocketNotifier> notifier_;
};

bool FlowWatch::connect()
{
    static const pw_core_events coreEvents = [] {
        pw_core_events table{};
        table.version = PW_VERSION_CORE_EVENTS;
        table.error = failed;
        return table;
    }();
    static const pw_registry_events registryEvents = [] {
        pw_registry_events table{};
        table.version = PW_VERSION_REGISTRY_EVENTS;
        table.global = appeared;
        table.global_remove = disappeared;
        return table;
    }();
    context_.reset(pw_context_new(loop_.get(), nullptr, 0));
    if (context_) {
        core_.reset(pw_context_connect(context_.get(), nullptr, 0));
    }
    if (!core_) {
        return false;
    }
    pw_core_add_listener(core_.get(), &coreListener_, &coreEvents, this);
    registry_.reset(pw_core_get_registry(core_.get(), PW_VERSION_REGISTRY, 0));
    if (!registry_) {
        return false;
    }
    pw_registry_add_listener(registry_.get(), &registryListener_, &registryEvents, this);
    notifier_
        = std::make_unique<QSocketNotifier>(pw_loop_get_fd(loop_.get()), QSocketNotifier::Read);
    QObject::connect(notifier_.get(), &QSocketNotifier::activated, notifier_.get(), [this] {
        while (isWorking_ && pw_loop_iterate(loop_.get(), 0) > 0) { }
    });
    while (pw_loop_iterate(loop_.get(), 0) > 0) { } // sends the requests
    return isWorking_;
}

void FlowWatch::stop()
{
    if (std::exchange(isWorking_, false)) {
        notifier_->setEnabled(false);
        news_();
    }
}

void FlowWatch::failed(void *data, std::uint32_t id, int /*seq*/, int result, const char *text)
{
    qCInfo(platformLog, "watching PipeWire: object %u: %s", id, text);
    if (id == PW_ID_CORE && result == -EPIPE) {
        static_cast<FlowWatch *>(data)->stop();
    }
}

void FlowWatch::appeared(void *data, std::uint32_t id, std::uint32_t /*permissions*/,
                         const char *type, std::uint32_t /*version*/, const spa_dict *properties)
{
    const auto property = [properties](const char *key) {
        const char *const value = properties ? spa_dict_lookup(properties, key) : nullptr;
        return std::string_view(value ? value : "");
    };
    const auto mediaClass = property(PW_KEY_MEDIA_CLASS);
    const bool isSound = mediaClass.find("Audio") != std::string_view::npos;
    if (std::string_view(type) == PW_TYPE_INTERFACE_Node && !isSound) {
        static_cast<FlowWatch *>(data)->add(
            id, mediaClass == "Stream/Input/Video" && property(PW_KEY_NODE_NAME) != nodeName);
    }
}

void FlowWatch::disappeared(void *data, std::uint32_t id)
{
    auto &watch = *static_cast<FlowWatch *>(data);
    const auto node = watch.nodes_.find(id);
    if (node == watch.nodes_.end()) {
        return;
    }
    const bool wasViewer = node->second.isViewer;
    watch.nodes_.erase(node);
    if (wasViewer) {
        watch.news_();
    }
}

void FlowWatch::add(std::uint32_t id, bool isViewer)
{
    static const pw_node_events events = [] {
        pw_node_events table{};
        table.version = PW_VERSION_NODE_EVENTS;
        table.info = changed;
        table.param = described;
        return table;
    }();
    auto &node = nodes_.try_emplace(id, *this, isViewer).first->second;
    node.proxy.reset(static_cast<pw_proxy *>(
        pw_registry_bind(registry_.get(), id, PW_TYPE_INTERFACE_Node, PW_VERSION_NODE, 0)));
    if (node.proxy) {
        auto *const remote = reinterpret_cast<pw_node *>(node.proxy.get());
        pw_node_add_listener(remote, &node.listener, &events, &node);
        std::uint32_t format = SPA_PARAM_Format;
        pw_node_subscribe_params(remote, &format, 1);
    }
}

void FlowWatch::changed(void *data, const pw_node_info *info)
{
    if ((info->change_mask & PW_NODE_CHANGE_MASK_STATE) == 0) {
        return;
    }
    auto &node = *static_cast<Node *>(data);
    node.isRunning = info->state == PW_NODE_STATE_RUNNING;
    if (node.isRunning || node.isViewer) {
        node.watch.news_();
    }
}

void FlowWatch::described(void *data, int /*seq*/, std::uint32_t parameter, std::uint32_t /*index*/,
                          std::uint32_t /*next*/, const spa_pod *value)
{
    spa_video_info_raw format{};
    if (parameter != SPA_PARAM_Format || value == nullptr
        || spa_format_video_raw_parse(value, &format) < 0) {
        return;
    }
    auto &node = *static_cast<Node *>(data);
    node.size = {int(format.size.width), int(format.size.height)};
    if (node.isViewer) {
        node.watch.news_();
    }
}

std::optional<bool> FlowWatch::isViewed(QSize size) const
{
    const auto views
        = [](const auto &entry) { return entry.second.isViewer && entry.second.isRunning; };
    if (!isWorking_) {
        return std::nullopt;
    }
    if (std::ranges::any_of(
            nodes_, [&](const auto &entry) { return views(entry) && entry.second.size == size; })) {
        return true;
    }
    return std::ranges::any_of(nodes_, views) ? std::nullopt : std::optional(false);
}

} // namespace

std::unique_ptr<ViewerWatch> watchFlow(std::function<void()> news)
{
    auto watch = std::make_unique<FlowWatch>(std::move(news));
    return watch->connect() ? std::move(watch) : nullptr;
}

} // namespace glimmerpane::pipewire
