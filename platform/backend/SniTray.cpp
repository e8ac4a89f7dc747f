#include "SniTray.h"

#include "Backend.h"
#include "platform/core/SysUtils.h"

#include <dbus/dbus.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <map>
#include <set>
#include <sys/stat.h>
#include <sys/timerfd.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace qv {

namespace {

constexpr const char* ItemPath = "/StatusNotifierItem";
constexpr const char* ItemInterface = "org.kde.StatusNotifierItem";
constexpr const char* ItemNamePrefix = "org.kde.StatusNotifierItem-";
constexpr const char* WatcherName = "org.kde.StatusNotifierWatcher";
constexpr const char* WatcherPath = "/StatusNotifierWatcher";
constexpr const char* PropertiesInterface = "org.freedesktop.DBus.Properties";
constexpr const char* IntrospectableInterface = "org.freedesktop.DBus.Introspectable";
constexpr const char* NotificationsName = "org.freedesktop.Notifications";
constexpr const char* NotificationsPath = "/org/freedesktop/Notifications";
constexpr const char* WatcherRule =
    "type='signal',sender='org.freedesktop.DBus',interface='org.freedesktop.DBus',"
    "member='NameOwnerChanged',arg0='org.kde.StatusNotifierWatcher'";
constexpr int LargestPublishedSide = 256;
constexpr int RegisterTimeoutMs = 5000;
constexpr std::uint32_t LeftDown = 0x201, RightDown = 0x204, MiddleDown = 0x207;
// The valid parts of a record (its flags, the classic NIF_ values).
constexpr std::uint32_t MessageValid = 1, IconValid = 2, TipValid = 4;

constexpr const char* IntrospectionXml =
    "<!DOCTYPE node PUBLIC \"-//freedesktop//DTD D-BUS Object Introspection 1.0//EN\"\n"
    " \"http://www.freedesktop.org/standards/dbus/1.0/introspect.dtd\">\n"
    "<node>\n"
    " <interface name=\"org.kde.StatusNotifierItem\">\n"
    "  <property name=\"Category\" type=\"s\" access=\"read\"/>\n"
    "  <property name=\"Id\" type=\"s\" access=\"read\"/>\n"
    "  <property name=\"Title\" type=\"s\" access=\"read\"/>\n"
    "  <property name=\"Status\" type=\"s\" access=\"read\"/>\n"
    "  <property name=\"WindowId\" type=\"i\" access=\"read\"/>\n"
    "  <property name=\"IconName\" type=\"s\" access=\"read\"/>\n"
    "  <property name=\"IconPixmap\" type=\"a(iiay)\" access=\"read\"/>\n"
    "  <property name=\"ToolTip\" type=\"(sa(iiay)ss)\" access=\"read\"/>\n"
    "  <property name=\"ItemIsMenu\" type=\"b\" access=\"read\"/>\n"
    "  <method name=\"Activate\"><arg type=\"i\" direction=\"in\"/>"
    "<arg type=\"i\" direction=\"in\"/></method>\n"
    "  <method name=\"SecondaryActivate\"><arg type=\"i\" direction=\"in\"/>"
    "<arg type=\"i\" direction=\"in\"/></method>\n"
    "  <method name=\"ContextMenu\"><arg type=\"i\" direction=\"in\"/>"
    "<arg type=\"i\" direction=\"in\"/></method>\n"
    "  <method name=\"Scroll\"><arg type=\"i\" direction=\"in\"/>"
    "<arg type=\"s\" direction=\"in\"/></method>\n"
    "  <signal name=\"NewTitle\"/>\n"
    "  <signal name=\"NewIcon\"/>\n"
    "  <signal name=\"NewToolTip\"/>\n"
    "  <signal name=\"NewStatus\"><arg type=\"s\"/></signal>\n"
    " </interface>\n"
    "</node>\n";

struct TConnectionCloser {
    void operator()(DBusConnection* connection) const {
        dbus_connection_close(connection);
        dbus_connection_unref(connection);
    }
};
using TConnectionPtr = std::unique_ptr<DBusConnection, TConnectionCloser>;

struct TMessageUnref {
    void operator()(DBusMessage* message) const { dbus_message_unref(message); }
};
using TMessagePtr = std::unique_ptr<DBusMessage, TMessageUnref>;

// A D-Bus error that frees itself.
struct TBusError {
    DBusError error;
    TBusError() { dbus_error_init(&error); }
    ~TBusError() { dbus_error_free(&error); }
    TBusError(const TBusError&) = delete;
    TBusError& operator=(const TBusError&) = delete;
};

// A private connection to the bus at `address`, registered with it; null when it does not
// answer. The process's SIGPIPE disposition is left alone (libdbus writes with MSG_NOSIGNAL),
// and a lost bus does not end the program.
TConnectionPtr Connect(const std::string& address) {
    dbus_connection_set_change_sigpipe(FALSE);
    TBusError error;
    DBusConnection* raw = dbus_connection_open_private(address.c_str(), &error.error);
    if (!raw) return nullptr;
    TConnectionPtr connection(raw);
    dbus_connection_set_exit_on_disconnect(raw, FALSE);
    if (!dbus_bus_register(raw, &error.error)) return nullptr;
    return connection;
}

bool NameHasOwner(DBusConnection* connection, const char* name) {
    TBusError error;
    return dbus_bus_name_has_owner(connection, name, &error.error);
}

const char* ProgramName() {
    return program_invocation_short_name;
}

// The picture as published: its own size up to LargestPublishedSide a side, else scaled down
// (aspect kept) by area average.
TPixelBuffer PublishedPicture(const TPixelBuffer& icon) {
    const int w = icon.Width(), h = icon.Height();
    const int longest = std::max(w, h);
    if (longest <= LargestPublishedSide) return icon;
    const int outW =
        std::max(1, static_cast<int>(std::int64_t{w} * LargestPublishedSide / longest));
    const int outH =
        std::max(1, static_cast<int>(std::int64_t{h} * LargestPublishedSide / longest));
    return ScaleTrayIconStraight(icon, {outW, outH});
}

// Strings on the bus must be UTF-8 (libdbus aborts the program otherwise): text that is not
// is taken as Latin-1, the framework's single-byte encoding.
std::string AsUtf8(const std::string& text) {
    return dbus_validate_utf8(text.c_str(), nullptr) ? text : Latin1ToUtf8(text);
}

void AppendString(DBusMessageIter* iter, const std::string& text) {
    const std::string utf8 = AsUtf8(text);
    const char* value = utf8.c_str();
    dbus_message_iter_append_basic(iter, DBUS_TYPE_STRING, &value);
}

// a(iiay): the picture as ARGB32 in network byte order; an empty array for no picture.
void AppendPixmaps(DBusMessageIter* iter, const TPixelBuffer& picture) {
    DBusMessageIter array, entry, bytes;
    dbus_message_iter_open_container(iter, DBUS_TYPE_ARRAY, "(iiay)", &array);
    if (!picture.IsEmpty()) {
        const dbus_int32_t width = picture.Width(), height = picture.Height();
        std::vector<unsigned char> data;
        data.reserve(static_cast<std::size_t>(width) * height * 4);
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x) {
                const std::uint32_t p = picture.At(x, y);
                for (int shift = 24; shift >= 0; shift -= 8)
                    data.push_back(static_cast<unsigned char>(p >> shift));
            }
        const unsigned char* start = data.data();
        dbus_message_iter_open_container(&array, DBUS_TYPE_STRUCT, nullptr, &entry);
        dbus_message_iter_append_basic(&entry, DBUS_TYPE_INT32, &width);
        dbus_message_iter_append_basic(&entry, DBUS_TYPE_INT32, &height);
        dbus_message_iter_open_container(&entry, DBUS_TYPE_ARRAY, "y", &bytes);
        dbus_message_iter_append_fixed_array(&bytes, DBUS_TYPE_BYTE, &start,
                                             static_cast<int>(data.size()));
        dbus_message_iter_close_container(&entry, &bytes);
        dbus_message_iter_close_container(&array, &entry);
    }
    dbus_message_iter_close_container(iter, &array);
}

// One item: its connection, name and object, and the loop's watches of its connection.
class TSniItem {
public:
    using TMouse = std::function<void(const TTrayIconRecord&, std::uint32_t)>;

    TSniItem(TBackend& loop, TConnectionPtr connection, std::string busName,
             const TTrayIconRecord& record, TMouse mouse);
    ~TSniItem();
    TSniItem(const TSniItem&) = delete;
    TSniItem& operator=(const TSniItem&) = delete;

    // Owns its name on a live connection.
    bool Published() const { return m_published && dbus_connection_get_is_connected(Bus()); }
    // Published while a watcher owns its name.
    bool Shown() const { return Published() && m_watcherPresent; }
    // Takes the valid parts of `record` and tells hosts what changed.
    void Update(const TTrayIconRecord& record);
    bool Notify(const std::string& text, int timeoutMs);

private:
    DBusConnection* Bus() const { return m_bus.get(); }
    bool Publish();
    void Register();
    void Pump();
    void Emit(const char* signal);
    std::string Title() const;

    // Messages.
    static DBusHandlerResult OnFilter(DBusConnection*, DBusMessage* message, void* self);
    static DBusHandlerResult OnMethod(DBusConnection*, DBusMessage* message, void* self);
    static void OnRegistered(DBusPendingCall* pending, void* self);
    DBusHandlerResult Answer(DBusMessage* call);
    void AnswerGet(DBusMessage* call, DBusMessage* reply);
    void AnswerGetAll(DBusMessage* reply);
    bool AppendProperty(DBusMessageIter* iter, const std::string& name) const;
    void Click(std::uint32_t down);

    // The loop's watches of the connection's descriptor and timeouts.
    static dbus_bool_t AddWatch(DBusWatch* watch, void* self);
    static void RemoveWatch(DBusWatch* watch, void* self);
    static void ToggleWatch(DBusWatch* watch, void* self);
    static dbus_bool_t AddTimeout(DBusTimeout* timeout, void* self);
    static void RemoveTimeout(DBusTimeout* timeout, void* self);
    static void ToggleTimeout(DBusTimeout* timeout, void* self);
    void ArmTimer(DBusTimeout* timeout);

    TBackend& m_loop;
    TConnectionPtr m_bus;
    std::string m_busName;
    TTrayIconRecord m_record;
    TPixelBuffer m_picture; // m_record.icon as published
    TMouse m_mouse;
    bool m_published{false};
    bool m_watcherPresent{false};
    bool m_pumping{false};
    DBusPendingCall* m_registering{nullptr};
    std::set<int> m_watchedFds;
    std::map<DBusTimeout*, int> m_timers; // timeout -> its timer descriptor
    unsigned m_lastButton{0};
    std::int64_t m_lastPress{-1000000};
};

TSniItem::TSniItem(TBackend& loop, TConnectionPtr connection, std::string busName,
                   const TTrayIconRecord& record, TMouse mouse)
    : m_loop(loop), m_bus(std::move(connection)), m_busName(std::move(busName)), m_record(record),
      m_picture(PublishedPicture(record.icon)), m_mouse(std::move(mouse)) {
    dbus_connection_add_filter(Bus(), &TSniItem::OnFilter, this, nullptr);
    dbus_connection_set_watch_functions(Bus(), &TSniItem::AddWatch, &TSniItem::RemoveWatch,
                                        &TSniItem::ToggleWatch, this, nullptr);
    dbus_connection_set_timeout_functions(Bus(), &TSniItem::AddTimeout, &TSniItem::RemoveTimeout,
                                          &TSniItem::ToggleTimeout, this, nullptr);
    m_published = Publish();
    if (m_published) {
        // The rule first, so that a watcher arriving after the question is still seen.
        dbus_bus_add_match(Bus(), WatcherRule, nullptr);
        m_watcherPresent = NameHasOwner(Bus(), WatcherName);
        if (m_watcherPresent) Register();
    }
    Pump(); // what came in during the calls above
}

TSniItem::~TSniItem() {
    if (m_registering) {
        dbus_pending_call_cancel(m_registering);
        dbus_pending_call_unref(m_registering);
    }
    dbus_connection_set_watch_functions(Bus(), nullptr, nullptr, nullptr, nullptr, nullptr);
    dbus_connection_set_timeout_functions(Bus(), nullptr, nullptr, nullptr, nullptr, nullptr);
    for (const int fd : m_watchedFds)
        m_loop.UnwatchFd(fd);
    for (const auto& [timeout, fd] : m_timers) {
        m_loop.UnwatchFd(fd);
        close(fd);
    }
    dbus_connection_remove_filter(Bus(), &TSniItem::OnFilter, this);
}

bool TSniItem::Publish() {
    TBusError error;
    const int owned =
        dbus_bus_request_name(Bus(), m_busName.c_str(), DBUS_NAME_FLAG_DO_NOT_QUEUE, &error.error);
    if (owned != DBUS_REQUEST_NAME_REPLY_PRIMARY_OWNER) return false;
    static const DBusObjectPathVTable vtable = {
        nullptr, &TSniItem::OnMethod, nullptr, nullptr, nullptr, nullptr};
    return dbus_connection_try_register_object_path(Bus(), ItemPath, &vtable, this, &error.error);
}

// RegisterStatusNotifierItem with the watcher; the answer only clears the pending call.
void TSniItem::Register() {
    if (m_registering) {
        dbus_pending_call_cancel(m_registering);
        dbus_pending_call_unref(m_registering);
        m_registering = nullptr;
    }
    TMessagePtr call(dbus_message_new_method_call(WatcherName, WatcherPath, WatcherName,
                                                  "RegisterStatusNotifierItem"));
    if (!call) return;
    DBusMessageIter iter;
    dbus_message_iter_init_append(call.get(), &iter);
    AppendString(&iter, m_busName);
    DBusPendingCall* pending = nullptr;
    if (!dbus_connection_send_with_reply(Bus(), call.get(), &pending, RegisterTimeoutMs) ||
        !pending)
        return;
    m_registering = pending;
    dbus_pending_call_set_notify(pending, &TSniItem::OnRegistered, this, nullptr);
}

void TSniItem::OnRegistered(DBusPendingCall* pending, void* self) {
    auto* item = static_cast<TSniItem*>(self);
    if (item->m_registering != pending) return;
    item->m_registering = nullptr;
    dbus_pending_call_unref(pending);
}

// Runs what has come in and sends what is queued, until neither is left. Not from within a
// handler: the pump that runs the handler sends its answers.
void TSniItem::Pump() {
    if (m_pumping) return;
    m_pumping = true;
    DBusConnection* bus = Bus();
    do {
        while (dbus_connection_dispatch(bus) == DBUS_DISPATCH_DATA_REMAINS) {
        }
        dbus_connection_flush(bus);
    } while (dbus_connection_get_dispatch_status(bus) == DBUS_DISPATCH_DATA_REMAINS);
    m_pumping = false;
}

void TSniItem::Emit(const char* signal) {
    TMessagePtr message(dbus_message_new_signal(ItemPath, ItemInterface, signal));
    if (message) dbus_connection_send(Bus(), message.get(), nullptr);
}

std::string TSniItem::Title() const {
    return m_record.tip.empty() ? ProgramName() : m_record.tip;
}

void TSniItem::Update(const TTrayIconRecord& record) {
    m_record.flags = record.flags;
    if (record.flags & MessageValid) m_record.callbackMessage = record.callbackMessage;
    const bool newIcon = (record.flags & IconValid) && !(record.icon == m_record.icon);
    const bool newTip = (record.flags & TipValid) && record.tip != m_record.tip;
    if (newIcon) {
        m_record.icon = record.icon;
        m_picture = PublishedPicture(record.icon);
        Emit("NewIcon");
    }
    if (newTip) {
        m_record.tip = record.tip;
        Emit("NewTitle");
        Emit("NewToolTip");
    }
    Pump();
}

bool TSniItem::Notify(const std::string& text, int timeoutMs) {
    const bool daemon = NameHasOwner(Bus(), NotificationsName);
    if (daemon) {
        TMessagePtr call(dbus_message_new_method_call(NotificationsName, NotificationsPath,
                                                      NotificationsName, "Notify"));
        if (call) {
            DBusMessageIter iter, actions, hints;
            dbus_message_iter_init_append(call.get(), &iter);
            AppendString(&iter, ProgramName());
            const dbus_uint32_t replaces = 0;
            dbus_message_iter_append_basic(&iter, DBUS_TYPE_UINT32, &replaces);
            AppendString(&iter, "");
            AppendString(&iter, Title());
            AppendString(&iter, text);
            dbus_message_iter_open_container(&iter, DBUS_TYPE_ARRAY, "s", &actions);
            dbus_message_iter_close_container(&iter, &actions);
            dbus_message_iter_open_container(&iter, DBUS_TYPE_ARRAY, "{sv}", &hints);
            dbus_message_iter_close_container(&iter, &hints);
            const dbus_int32_t expire = std::max(timeoutMs, 0); // 0: until dismissed
            dbus_message_iter_append_basic(&iter, DBUS_TYPE_INT32, &expire);
            dbus_message_set_no_reply(call.get(), TRUE);
            dbus_connection_send(Bus(), call.get(), nullptr);
        }
    }
    Pump();
    return daemon;
}

// Mouse messages: a second press of the same button within the double-click time is a
// double click, as the window's own shell would report it.
void TSniItem::Click(std::uint32_t down) {
    const std::int64_t now = m_loop.NowMs();
    const bool second = m_lastButton == down && now - m_lastPress <= TrayDoubleClickMs;
    m_mouse(m_record, second ? down + 2 : down);
    m_mouse(m_record, down + 1);
    m_lastButton = second ? 0 : down;
    m_lastPress = now;
}

DBusHandlerResult TSniItem::OnFilter(DBusConnection*, DBusMessage* message, void* self) {
    auto* item = static_cast<TSniItem*>(self);
    if (dbus_message_is_signal(message, DBUS_INTERFACE_LOCAL, "Disconnected")) {
        item->m_watcherPresent = false;
        return DBUS_HANDLER_RESULT_HANDLED;
    }
    if (!dbus_message_is_signal(message, DBUS_INTERFACE_DBUS, "NameOwnerChanged"))
        return DBUS_HANDLER_RESULT_NOT_YET_HANDLED;
    const char *name = nullptr, *before = nullptr, *after = nullptr;
    if (!dbus_message_get_args(message, nullptr, DBUS_TYPE_STRING, &name, DBUS_TYPE_STRING, &before,
                               DBUS_TYPE_STRING, &after, DBUS_TYPE_INVALID) ||
        std::strcmp(name, WatcherName) != 0)
        return DBUS_HANDLER_RESULT_NOT_YET_HANDLED;
    // A new watcher (also one that replaced another) knows nothing of the item yet.
    item->m_watcherPresent = *after != '\0';
    if (item->m_watcherPresent) item->Register();
    return DBUS_HANDLER_RESULT_HANDLED;
}

DBusHandlerResult TSniItem::OnMethod(DBusConnection*, DBusMessage* message, void* self) {
    return static_cast<TSniItem*>(self)->Answer(message);
}

DBusHandlerResult TSniItem::Answer(DBusMessage* call) {
    if (dbus_message_get_type(call) != DBUS_MESSAGE_TYPE_METHOD_CALL)
        return DBUS_HANDLER_RESULT_NOT_YET_HANDLED;
    const char* interface = dbus_message_get_interface(call);
    const char* name = dbus_message_get_member(call);
    const std::string member = name ? name : "";
    const std::string in = interface ? interface : "";
    TMessagePtr reply(dbus_message_new_method_return(call));
    if (!reply) return DBUS_HANDLER_RESULT_NEED_MEMORY;
    if ((in.empty() || in == PropertiesInterface) && member == "Get") {
        AnswerGet(call, reply.get());
        return DBUS_HANDLER_RESULT_HANDLED;
    }
    if ((in.empty() || in == PropertiesInterface) && member == "GetAll") {
        AnswerGetAll(reply.get());
    } else if ((in.empty() || in == IntrospectableInterface) && member == "Introspect") {
        DBusMessageIter iter;
        dbus_message_iter_init_append(reply.get(), &iter);
        AppendString(&iter, IntrospectionXml);
    } else if (in.empty() || in == ItemInterface) {
        if (member == "Activate")
            Click(LeftDown);
        else if (member == "ContextMenu")
            Click(RightDown);
        else if (member == "SecondaryActivate")
            Click(MiddleDown);
        else if (member != "Scroll" && member != "ProvideXdgActivationToken")
            return DBUS_HANDLER_RESULT_NOT_YET_HANDLED;
    } else {
        return DBUS_HANDLER_RESULT_NOT_YET_HANDLED;
    }
    if (!dbus_message_get_no_reply(call)) dbus_connection_send(Bus(), reply.get(), nullptr);
    return DBUS_HANDLER_RESULT_HANDLED;
}

void TSniItem::AnswerGet(DBusMessage* call, DBusMessage* reply) {
    const char *interface = nullptr, *name = nullptr;
    DBusMessageIter iter;
    dbus_message_iter_init_append(reply, &iter);
    const bool parsed = dbus_message_get_args(call, nullptr, DBUS_TYPE_STRING, &interface,
                                              DBUS_TYPE_STRING, &name, DBUS_TYPE_INVALID);
    if (parsed && std::strcmp(interface, ItemInterface) == 0 && AppendProperty(&iter, name)) {
        dbus_connection_send(Bus(), reply, nullptr);
        return;
    }
    TMessagePtr error(
        dbus_message_new_error(call, DBUS_ERROR_UNKNOWN_PROPERTY, parsed ? name : "bad arguments"));
    if (error) dbus_connection_send(Bus(), error.get(), nullptr);
}

void TSniItem::AnswerGetAll(DBusMessage* reply) {
    static const char* const names[] = {"Category",   "Id",       "Title",
                                        "Status",     "WindowId", "IconName",
                                        "IconPixmap", "ToolTip",  "ItemIsMenu"};
    DBusMessageIter iter, dict, entry;
    dbus_message_iter_init_append(reply, &iter);
    dbus_message_iter_open_container(&iter, DBUS_TYPE_ARRAY, "{sv}", &dict);
    for (const char* name : names) {
        dbus_message_iter_open_container(&dict, DBUS_TYPE_DICT_ENTRY, nullptr, &entry);
        AppendString(&entry, name);
        AppendProperty(&entry, name);
        dbus_message_iter_close_container(&dict, &entry);
    }
    dbus_message_iter_close_container(&iter, &dict);
}

// The property's value as a variant; false for a property the item does not have.
bool TSniItem::AppendProperty(DBusMessageIter* iter, const std::string& name) const {
    struct TProperty {
        const char* name;
        const char* signature;
        void (*append)(const TSniItem&, DBusMessageIter*);
    };
    static const TProperty properties[] = {
        {"Category", "s",
         [](const TSniItem&, DBusMessageIter* v) { AppendString(v, "ApplicationStatus"); }},
        {"Id", "s",
         [](const TSniItem& item, DBusMessageIter* v) {
             AppendString(
                 v,
                 std::string(ProgramName()).append("-").append(std::to_string(item.m_record.id)));
         }},
        {"Title", "s",
         [](const TSniItem& item, DBusMessageIter* v) { AppendString(v, item.Title()); }},
        {"Status", "s", [](const TSniItem&, DBusMessageIter* v) { AppendString(v, "Active"); }},
        {"WindowId", "i",
         [](const TSniItem&, DBusMessageIter* v) {
             const dbus_int32_t none = 0;
             dbus_message_iter_append_basic(v, DBUS_TYPE_INT32, &none);
         }},
        {"IconName", "s", [](const TSniItem&, DBusMessageIter* v) { AppendString(v, ""); }},
        {"IconPixmap", "a(iiay)",
         [](const TSniItem& item, DBusMessageIter* v) { AppendPixmaps(v, item.m_picture); }},
        {"ToolTip", "(sa(iiay)ss)",
         [](const TSniItem& item, DBusMessageIter* v) {
             DBusMessageIter tip;
             dbus_message_iter_open_container(v, DBUS_TYPE_STRUCT, nullptr, &tip);
             AppendString(&tip, "");
             AppendPixmaps(&tip, {});
             AppendString(&tip, item.m_record.tip);
             AppendString(&tip, "");
             dbus_message_iter_close_container(v, &tip);
         }},
        {"ItemIsMenu", "b",
         [](const TSniItem&, DBusMessageIter* v) {
             const dbus_bool_t no = FALSE;
             dbus_message_iter_append_basic(v, DBUS_TYPE_BOOLEAN, &no);
         }},
    };
    for (const TProperty& property : properties) {
        if (name != property.name) continue;
        DBusMessageIter variant;
        dbus_message_iter_open_container(iter, DBUS_TYPE_VARIANT, property.signature, &variant);
        property.append(*this, &variant);
        dbus_message_iter_close_container(iter, &variant);
        return true;
    }
    return false;
}

// Watches: only reading is watched; what is queued for sending goes out at the end of each
// pump (dbus_connection_flush).
dbus_bool_t TSniItem::AddWatch(DBusWatch* watch, void* self) {
    if (!(dbus_watch_get_flags(watch) & DBUS_WATCH_READABLE)) return TRUE;
    ToggleWatch(watch, self);
    return TRUE;
}

void TSniItem::RemoveWatch(DBusWatch* watch, void* self) {
    if (!(dbus_watch_get_flags(watch) & DBUS_WATCH_READABLE)) return;
    auto* item = static_cast<TSniItem*>(self);
    const int fd = dbus_watch_get_unix_fd(watch);
    if (item->m_watchedFds.erase(fd)) item->m_loop.UnwatchFd(fd);
}

void TSniItem::ToggleWatch(DBusWatch* watch, void* self) {
    if (!(dbus_watch_get_flags(watch) & DBUS_WATCH_READABLE)) return;
    if (!dbus_watch_get_enabled(watch)) {
        RemoveWatch(watch, self);
        return;
    }
    auto* item = static_cast<TSniItem*>(self);
    const int fd = dbus_watch_get_unix_fd(watch);
    item->m_watchedFds.insert(fd);
    item->m_loop.WatchFd(fd, [item, watch] {
        // The watch may go while it is handled (a lost connection): only the item after it.
        dbus_watch_handle(watch, DBUS_WATCH_READABLE);
        item->Pump();
    });
}

// Timeouts: a timer descriptor each, read in the loop like the connection.
dbus_bool_t TSniItem::AddTimeout(DBusTimeout* timeout, void* self) {
    auto* item = static_cast<TSniItem*>(self);
    const int fd = timerfd_create(CLOCK_MONOTONIC, TFD_NONBLOCK | TFD_CLOEXEC);
    if (fd < 0) return FALSE;
    item->m_timers[timeout] = fd;
    item->m_loop.WatchFd(fd, [item, timeout, fd] {
        std::uint64_t expirations = 0;
        if (read(fd, &expirations, sizeof expirations) != sizeof expirations) return;
        dbus_timeout_handle(timeout); // may remove the timeout
        item->Pump();
    });
    item->ArmTimer(timeout);
    return TRUE;
}

void TSniItem::RemoveTimeout(DBusTimeout* timeout, void* self) {
    auto* item = static_cast<TSniItem*>(self);
    const auto it = item->m_timers.find(timeout);
    if (it == item->m_timers.end()) return;
    item->m_loop.UnwatchFd(it->second);
    close(it->second);
    item->m_timers.erase(it);
}

void TSniItem::ToggleTimeout(DBusTimeout* timeout, void* self) {
    static_cast<TSniItem*>(self)->ArmTimer(timeout);
}

void TSniItem::ArmTimer(DBusTimeout* timeout) {
    const auto it = m_timers.find(timeout);
    if (it == m_timers.end()) return;
    itimerspec schedule{};
    if (dbus_timeout_get_enabled(timeout)) {
        const int ms = std::max(dbus_timeout_get_interval(timeout), 1);
        schedule.it_value = {ms / 1000, (ms % 1000) * 1000000L};
        schedule.it_interval = schedule.it_value;
    }
    timerfd_settime(it->second, 0, &schedule, nullptr);
}

class TSniTrayShell final : public TTrayShell {
public:
    TSniTrayShell(TBackend& loop, std::string address)
        : m_loop(loop), m_address(std::move(address)) {}

    const char* Name() const override { return "sni"; }
    bool Apply(TTrayOperation operation, const TTrayIconRecord& record) override;
    bool ShowMessage(const TTrayIconRecord& record, const std::string& text,
                     int timeoutMs) override;

private:
    using TKey = std::pair<std::uintptr_t, std::uint32_t>;

    TBackend& m_loop;
    std::string m_address;
    unsigned m_nextItem{0};
    std::map<TKey, std::unique_ptr<TSniItem>> m_items;
};

bool TSniTrayShell::Apply(TTrayOperation operation, const TTrayIconRecord& record) {
    const TKey key{record.window, record.id};
    const auto it = m_items.find(key);
    switch (operation) {
    case TTrayOperation::Add: {
        if (it != m_items.end()) return false;
        TConnectionPtr connection = Connect(m_address);
        if (!connection) return false;
        std::string name = std::string(ItemNamePrefix)
                               .append(std::to_string(getpid()))
                               .append("-")
                               .append(std::to_string(++m_nextItem));
        auto item = std::make_unique<TSniItem>(
            m_loop, std::move(connection), std::move(name), record,
            [this](const TTrayIconRecord& icon, std::uint32_t mouse) { Notify(icon, mouse); });
        if (!item->Published()) return false;
        const bool shown = item->Shown();
        m_items.emplace(key, std::move(item));
        return shown;
    }
    case TTrayOperation::Modify:
        if (it == m_items.end()) return false;
        it->second->Update(record);
        return it->second->Shown();
    case TTrayOperation::Delete:
        if (it == m_items.end()) return false;
        m_items.erase(it);
        return true;
    }
    return false;
}

bool TSniTrayShell::ShowMessage(const TTrayIconRecord& record, const std::string& text,
                                int timeoutMs) {
    const auto it = m_items.find({record.window, record.id});
    return it != m_items.end() && it->second->Published() && it->second->Notify(text, timeoutMs);
}

} // namespace

std::string SessionBusAddress() {
    const char* address = std::getenv("DBUS_SESSION_BUS_ADDRESS");
    if (address && *address) return address;
    const char* runtime = std::getenv("XDG_RUNTIME_DIR");
    if (!runtime || !*runtime) return {};
    const std::string socket = std::string(runtime).append("/bus");
    struct stat info {};
    if (stat(socket.c_str(), &info) != 0 || !S_ISSOCK(info.st_mode)) return {};
    char* escaped = dbus_address_escape_value(socket.c_str());
    if (!escaped) return {};
    std::string result = std::string("unix:path=").append(escaped);
    dbus_free(escaped);
    return result;
}

std::unique_ptr<TTrayShell> OpenSniTrayShell(TBackend& loop, bool requireWatcher) {
    const std::string address = SessionBusAddress();
    if (address.empty()) return nullptr;
    const TConnectionPtr probe = Connect(address);
    if (!probe || (requireWatcher && !NameHasOwner(probe.get(), WatcherName))) return nullptr;
    return std::make_unique<TSniTrayShell>(loop, address);
}

} // namespace qv
