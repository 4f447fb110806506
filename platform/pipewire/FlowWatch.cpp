// SPDX-License-Identifier: MIT
#include "platform/pipewire/FlowWatch.h"

#include "platform/Log.h"
#include "platform/pipewire/Handles.h"

#include <QSocketNotifier>

#include <cerrno>
#include <cstdint>
#include <cstring>
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

private:
    struct Node {
        FlowWatch &watch;
        spa_hook listener{}; ///< used until the proxy is gone
        Handle<pw_proxy, pw_proxy_destroy> proxy{};

        explicit Node(FlowWatch &owner)
            : watch(owner)
        {
        }
    };

    static void failed(void *data, std::uint32_t id, int seq, int result, const char *text);
    static void appeared(void *data, std::uint32_t id, std::uint32_t permissions, const char *type,
                         std::uint32_t version, const spa_dict *properties);
    static void disappeared(void *data, std::uint32_t id);
    static void changed(void *data, const pw_node_info *info);

    void add(std::uint32_t id);
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
    const char *const mediaClass
        = properties != nullptr ? spa_dict_lookup(properties, PW_KEY_MEDIA_CLASS) : nullptr;
    const bool isSound
        = mediaClass != nullptr && std::string_view(mediaClass).find("Audio") != std::string::npos;
    if (std::strcmp(type, PW_TYPE_INTERFACE_Node) == 0 && !isSound) {
        static_cast<FlowWatch *>(data)->add(id);
    }
}

void FlowWatch::disappeared(void *data, std::uint32_t id)
{
    static_cast<FlowWatch *>(data)->nodes_.erase(id);
}

void FlowWatch::add(std::uint32_t id)
{
    static const pw_node_events events = [] {
        pw_node_events table{};
        table.version = PW_VERSION_NODE_EVENTS;
        table.info = changed;
        return table;
    }();
    auto &node = nodes_.try_emplace(id, *this).first->second;
    node.proxy.reset(static_cast<pw_proxy *>(
        pw_registry_bind(registry_.get(), id, PW_TYPE_INTERFACE_Node, PW_VERSION_NODE, 0)));
    if (node.proxy) {
        pw_node_add_listener(reinterpret_cast<pw_node *>(node.proxy.get()), &node.listener, &events,
                             &node);
    }
}

void FlowWatch::changed(void *data, const pw_node_info *info)
{
    if ((info->change_mask & PW_NODE_CHANGE_MASK_STATE) != 0
        && info->state == PW_NODE_STATE_RUNNING) {
        static_cast<Node *>(data)->watch.news_();
    }
}

} // namespace

std::unique_ptr<ViewerWatch> watchFlow(std::function<void()> news)
{
    auto watch = std::make_unique<FlowWatch>(std::move(news));
    return watch->connect() ? std::move(watch) : nullptr;
}

} // namespace glimmerpane::pipewire
