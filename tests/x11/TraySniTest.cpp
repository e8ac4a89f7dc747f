// The StatusNotifierItem tray on a private session bus: each test starts Debian's dbus-daemon
// with a configuration of its own in a scratch folder and plays the other side itself with
// libdbus: the watcher (owns org.kde.StatusNotifierWatcher, records registrations), the host
// (reads properties, calls Activate, ContextMenu and SecondaryActivate, hears the change
// signals) and a notification daemon. The icons are TqTrayIcons on a headless backend whose
// tray is chosen as the X11 backend chooses its own, so no X server is needed; one test
// checks the X11 backend's own choice on the suite's Xvfb server.

#include <gtest/gtest.h>

#ifdef QV_HAVE_DBUS

#include "platform/backend/HeadlessBackend.h"
#include "platform/backend/SniTray.h"
#include "platform/controls/Application.h"
#include "platform/controls/Form.h"
#include "platform/system/ChildProcess.h"
#include "utility/Mystd.h"

#include "X11Fixture.h"

#include <dbus/dbus.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <vector>

using namespace qv;

namespace {

struct TConnectionCloser {
    void operator()(DBusConnection* c) const {
        dbus_connection_close(c);
        dbus_connection_unref(c);
    }
};
using TBusConnection = std::unique_ptr<DBusConnection, TConnectionCloser>;
struct TMessageUnref {
    void operator()(DBusMessage* m) const { dbus_message_unref(m); }
};
using TBusMessage = std::unique_ptr<DBusMessage, TMessageUnref>;

// Environment variables set for a test and put back afterwards.
class TEnvironment {
public:
    ~TEnvironment() {
        for (const auto& [name, value] : m_saved)
            value ? setenv(name.c_str(), value->c_str(), 1) : unsetenv(name.c_str());
    }
    void Set(const std::string& name, const char* value) {
        if (!m_saved.count(name)) {
            const char* old = std::getenv(name.c_str());
            m_saved[name] = old ? std::optional<std::string>(old) : std::nullopt;
        }
        value ? setenv(name.c_str(), value, 1) : unsetenv(name.c_str());
    }

private:
    std::map<std::string, std::optional<std::string>> m_saved;
};

// dbus-daemon listening at <scratch>/bus, stopped and cleaned away with the object.
class TPrivateBus {
public:
    static std::unique_ptr<TPrivateBus> Start() {
        std::string folder = (std::filesystem::temp_directory_path() / "qv-sni-XXXXXX").string();
        if (!mkdtemp(folder.data())) return nullptr;
        std::unique_ptr<TPrivateBus> bus(new TPrivateBus(folder));
        std::ofstream(bus->m_folder / "bus.conf")
            << "<busconfig><type>session</type><listen>unix:path=" << bus->Socket().string()
            << "</listen><auth>EXTERNAL</auth><policy context=\"default\">"
               "<allow send_destination=\"*\" eavesdrop=\"true\"/><allow eavesdrop=\"true\"/>"
               "<allow own=\"*\"/></policy></busconfig>\n";
        int error = 0;
        bus->m_daemon = TChildProcess::Spawn(
            {"dbus-daemon",
             std::string("--config-file=").append((bus->m_folder / "bus.conf").string()),
             "--nofork", "--nopidfile"},
            error, {.stderrPath = (bus->m_folder / "daemon.log").string()});
        if (!bus->m_daemon) return nullptr;
        // Up once its socket is there; a bound on a loaded machine, left as soon as it is.
        for (int i = 0; i < 2000 && !std::filesystem::exists(bus->Socket()); ++i) {
            if (bus->m_daemon->TryWait()) return nullptr;
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
        return std::filesystem::exists(bus->Socket()) ? std::move(bus) : nullptr;
    }
    ~TPrivateBus() {
        Stop();
        std::filesystem::remove_all(m_folder);
    }
    void Stop() {
        if (!m_daemon || m_daemon->Ended()) return;
        kill(m_daemon->Pid(), SIGTERM);
        m_daemon->Wait();
    }
    std::filesystem::path Socket() const { return m_folder / "bus"; }
    std::string Address() const { return std::string("unix:path=").append(Socket().string()); }
    const std::filesystem::path& Folder() const { return m_folder; }

private:
    explicit TPrivateBus(std::filesystem::path folder) : m_folder(std::move(folder)) {}
    std::filesystem::path m_folder;
    std::optional<TChildProcess> m_daemon;
};

// The test's own connection: watcher, host and notification daemon as asked.
class TPeer {
public:
    struct TNote {
        std::string summary, body;
        int timeout;
    };
    explicit TPeer(const std::string& address) {
        m_bus.reset(dbus_connection_open_private(address.c_str(), nullptr));
        if (!m_bus || !dbus_bus_register(Bus(), nullptr)) return;
        dbus_connection_add_filter(Bus(), &TPeer::OnMessage, this, nullptr);
        dbus_bus_add_match(Bus(), "type='signal',interface='org.kde.StatusNotifierItem'", nullptr);
    }
    DBusConnection* Bus() const { return m_bus.get(); }
    bool Own(const char* name) {
        return dbus_bus_request_name(Bus(), name, DBUS_NAME_FLAG_DO_NOT_QUEUE, nullptr) ==
               DBUS_REQUEST_NAME_REPLY_PRIMARY_OWNER;
    }
    bool HasOwner(const std::string& name) {
        return dbus_bus_name_has_owner(Bus(), name.c_str(), nullptr);
    }
    void Poll() {
        dbus_connection_read_write(Bus(), 0);
        while (dbus_connection_dispatch(Bus()) == DBUS_DISPATCH_DATA_REMAINS) {
        }
    }

    std::vector<std::string> registered; // RegisterStatusNotifierItem's names
    std::vector<std::string> heard;      // the items' signals
    std::vector<TNote> notes;            // Notify's texts

private:
    static DBusHandlerResult OnMessage(DBusConnection*, DBusMessage* m, void* self) {
        auto* peer = static_cast<TPeer*>(self);
        if (dbus_message_get_type(m) == DBUS_MESSAGE_TYPE_SIGNAL &&
            dbus_message_has_interface(m, "org.kde.StatusNotifierItem")) {
            peer->heard.push_back(dbus_message_get_member(m));
            return DBUS_HANDLER_RESULT_HANDLED;
        }
        TBusMessage reply(dbus_message_new_method_return(m));
        const char *name = nullptr, *appName = nullptr, *icon = nullptr, *summary = nullptr,
                   *body = nullptr;
        if (dbus_message_is_method_call(m, "org.kde.StatusNotifierWatcher",
                                        "RegisterStatusNotifierItem") &&
            dbus_message_get_args(m, nullptr, DBUS_TYPE_STRING, &name, DBUS_TYPE_INVALID)) {
            peer->registered.push_back(name);
        } else if (dbus_message_is_method_call(m, "org.freedesktop.Notifications", "Notify")) {
            DBusMessageIter it;
            dbus_message_iter_init(m, &it);
            for (const char** field : {&appName, &appName, &icon, &summary, &body}) {
                if (dbus_message_iter_get_arg_type(&it) == DBUS_TYPE_STRING)
                    dbus_message_iter_get_basic(&it, field);
                dbus_message_iter_next(&it);
            }
            dbus_message_iter_next(&it); // actions
            dbus_message_iter_next(&it); // hints
            dbus_int32_t timeout = -2;
            dbus_message_iter_get_basic(&it, &timeout);
            peer->notes.push_back({summary, body, timeout});
            const dbus_uint32_t id = 1;
            dbus_message_append_args(reply.get(), DBUS_TYPE_UINT32, &id, DBUS_TYPE_INVALID);
        } else {
            return DBUS_HANDLER_RESULT_NOT_YET_HANDLED;
        }
        if (!dbus_message_get_no_reply(m)) dbus_connection_send(peer->Bus(), reply.get(), nullptr);
        return DBUS_HANDLER_RESULT_HANDLED;
    }
    TBusConnection m_bus;
};

// A picture as the host reads it from IconPixmap: size and ARGB bytes.
struct TPixmap {
    int width{0}, height{0};
    std::vector<unsigned char> bytes;
};

std::vector<TPixmap> ReadPixmaps(DBusMessageIter* array) {
    std::vector<TPixmap> pixmaps;
    DBusMessageIter entry, fields, bytes;
    dbus_message_iter_recurse(array, &entry);
    for (; dbus_message_iter_get_arg_type(&entry) == DBUS_TYPE_STRUCT;
         dbus_message_iter_next(&entry)) {
        TPixmap pixmap;
        dbus_message_iter_recurse(&entry, &fields);
        dbus_message_iter_get_basic(&fields, &pixmap.width);
        dbus_message_iter_next(&fields);
        dbus_message_iter_get_basic(&fields, &pixmap.height);
        dbus_message_iter_next(&fields);
        dbus_message_iter_recurse(&fields, &bytes);
        const unsigned char* data = nullptr;
        int count = 0;
        dbus_message_iter_get_fixed_array(&bytes, &data, &count);
        pixmap.bytes.assign(data, data + count);
        pixmaps.push_back(std::move(pixmap));
    }
    return pixmaps;
}

// The headless backend with the tray chosen as the X11 backend chooses it (the fake, which
// stands for XEmbed here, when no StatusNotifierItem shell is chosen).
class TSniBackend : public THeadlessBackend {
public:
    TTrayShell& TrayShell() override {
        if (!m_shell)
            m_shell = ChooseTrayShell(*this, [] { return std::make_unique<THeadlessTrayShell>(); });
        return *m_shell;
    }

private:
    std::unique_ptr<TTrayShell> m_shell;
};

class SniTray : public ::testing::Test {
protected:
    void SetUp() override {
        bus = TPrivateBus::Start();
        ASSERT_TRUE(bus) << "dbus-daemon (Debian's dbus-daemon package) did not start";
        env.Set("DBUS_SESSION_BUS_ADDRESS", bus->Address().c_str());
        env.Set("QV_TRAY", nullptr);
        Application().SetBackend(std::make_unique<TSniBackend>());
        main = std::make_unique<TForm>(nullptr);
        Application().SetMainForm(main.get());
    }
    void TearDown() override {
        Application().SetMainForm(nullptr);
        main.reset();
        Application().SetBackend(std::make_unique<THeadlessBackend>());
        peers.clear();
    }
    TPeer& Peer(const char* owns = nullptr) {
        peers.push_back(std::make_unique<TPeer>(bus->Address()));
        if (owns) {
            EXPECT_TRUE(peers.back()->Own(owns));
        }
        return *peers.back();
    }
    THeadlessBackend& Backend() { return static_cast<THeadlessBackend&>(Application().Backend()); }
    // The loop and every peer until `done` holds (false after twenty seconds, a bound for a
    // loaded machine; the wait ends as soon as `done` holds).
    bool PumpUntil(const std::function<bool()>& done) {
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
        while (!done()) {
            if (std::chrono::steady_clock::now() > deadline) return false;
            for (const auto& peer : peers)
                peer->Poll();
            Backend().WaitForEvents(5);
            Application().ProcessMessages();
        }
        return true;
    }
    // A method call from `from` to the item, answered while the loop runs.
    TBusMessage Call(TPeer& from, const std::string& item, const char* interface,
                     const char* member, const std::function<void(DBusMessage*)>& arguments = {}) {
        TBusMessage call(
            dbus_message_new_method_call(item.c_str(), "/StatusNotifierItem", interface, member));
        if (arguments) arguments(call.get());
        DBusPendingCall* pending = nullptr;
        dbus_connection_send_with_reply(from.Bus(), call.get(), &pending, 20000);
        EXPECT_TRUE(PumpUntil([&] { return dbus_pending_call_get_completed(pending); }));
        TBusMessage reply(dbus_pending_call_steal_reply(pending));
        dbus_pending_call_unref(pending);
        return reply;
    }
    TBusMessage Get(TPeer& from, const std::string& item, const char* property) {
        return Call(from, item, "org.freedesktop.DBus.Properties", "Get", [&](DBusMessage* m) {
            const char* interface = "org.kde.StatusNotifierItem";
            dbus_message_append_args(m, DBUS_TYPE_STRING, &interface, DBUS_TYPE_STRING, &property,
                                     DBUS_TYPE_INVALID);
        });
    }
    // A property's value: `reply`'s variant opened in `value`.
    static bool OpenVariant(DBusMessage* reply, DBusMessageIter* top, DBusMessageIter* value) {
        if (!reply || dbus_message_get_type(reply) != DBUS_MESSAGE_TYPE_METHOD_RETURN) return false;
        dbus_message_iter_init(reply, top);
        dbus_message_iter_recurse(top, value);
        return true;
    }
    std::string GetString(TPeer& from, const std::string& item, const char* property) {
        TBusMessage reply = Get(from, item, property);
        DBusMessageIter top, value;
        const char* text = nullptr;
        if (!OpenVariant(reply.get(), &top, &value)) return "<error>";
        dbus_message_iter_get_basic(&value, &text);
        return text;
    }
    std::vector<TPixmap> GetPixmaps(TPeer& from, const std::string& item) {
        TBusMessage reply = Get(from, item, "IconPixmap");
        DBusMessageIter top, value;
        return OpenVariant(reply.get(), &top, &value) ? ReadPixmaps(&value)
                                                      : std::vector<TPixmap>{};
    }
    void Invoke(TPeer& from, const std::string& item, const char* member) {
        Call(from, item, "org.kde.StatusNotifierItem", member, [](DBusMessage* m) {
            const dbus_int32_t x = 10, y = 20;
            dbus_message_append_args(m, DBUS_TYPE_INT32, &x, DBUS_TYPE_INT32, &y,
                                     DBUS_TYPE_INVALID);
        });
        Application().ProcessMessages();
    }
    TqTrayIcon& Icon(const TPixelBuffer& picture, const std::string& tip) {
        auto* icon = new TqTrayIcon(main.get());
        TIcon image;
        image.SetImage(picture);
        icon->SetIcon(&image);
        icon->SetToolTip(tip);
        icon->OnClick = [this](TObject*) { log.push_back("click"); };
        icon->OnDblClick = [this](TObject*) { log.push_back("dblclick"); };
        icon->OnRightClick = [this](TObject*, TMouseButtonKind, TShiftState, int, int) {
            log.push_back("rclick");
        };
        icon->OnMidClick = [this](TObject*, TMouseButtonKind, TShiftState, int, int) {
            log.push_back("mclick");
        };
        icon->SetActive(true);
        Application().ProcessMessages();
        return *icon;
    }

    TEnvironment env;
    std::unique_ptr<TPrivateBus> bus;
    std::vector<std::unique_ptr<TPeer>> peers;
    std::unique_ptr<TForm> main;
    std::vector<std::string> log;
};

// The X11 backend on the test's Xvfb server, for its choice of tray.
class SniTrayOnX11 : public qv::test::TX11Fixture {};

std::size_t OpenDescriptors() {
    const std::filesystem::directory_iterator fds("/proc/self/fd");
    return static_cast<std::size_t>(std::distance(begin(fds), end(fds)));
}

std::string Choice() {
    THeadlessBackend loop;
    const auto shell = ChooseTrayShell(loop, [] {
        struct TNative : THeadlessTrayShell {
            const char* Name() const override { return "native"; }
        };
        return std::make_unique<TNative>();
    });
    return shell->Name();
}

} // namespace

TEST_F(SniTray, TheShellIsChosenByTheWatcherAndQvTray) {
    const auto descriptors = OpenDescriptors();
    EXPECT_EQ(Choice(), "native");             // a bus without a watcher
    EXPECT_EQ(OpenDescriptors(), descriptors); // the question's connection is closed
    env.Set("QV_TRAY", "sni");
    EXPECT_EQ(Choice(), "sni"); // asked for: its icons register once a watcher comes
    env.Set("QV_TRAY", nullptr);
    Peer("org.kde.StatusNotifierWatcher");
    EXPECT_EQ(Choice(), "sni");
    env.Set("QV_TRAY", "xembed");
    EXPECT_EQ(Choice(), "native");
    env.Set("QV_TRAY", "fake");
    EXPECT_EQ(Choice(), "fake");
    env.Set("QV_TRAY", nullptr);

    // No session bus: an address nobody listens at, none at all, and the runtime folder's.
    env.Set("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent/qv-bus");
    EXPECT_EQ(Choice(), "native");
    env.Set("DBUS_SESSION_BUS_ADDRESS", nullptr);
    env.Set("XDG_RUNTIME_DIR", "/nonexistent");
    EXPECT_EQ(SessionBusAddress(), "");
    EXPECT_EQ(Choice(), "native");
    env.Set("XDG_RUNTIME_DIR", bus->Folder().c_str());
    EXPECT_EQ(SessionBusAddress(), bus->Address());
    EXPECT_EQ(Choice(), "sni");
}

TEST_F(SniTray, TheItemRegistersAndPublishesItsPictureAndTip) {
    TPeer& watcher = Peer("org.kde.StatusNotifierWatcher");
    TPixelBuffer picture(2, 1, 0x80FF2010);
    picture.At(1, 0) = 0xFF0000FF;
    Icon(picture, "Volts");
    ASSERT_STREQ(Application().Backend().TrayShell().Name(), "sni");
    ASSERT_TRUE(PumpUntil([&] { return watcher.registered.size() == 1; }));
    const std::string item = watcher.registered[0];
    EXPECT_EQ(item.rfind("org.kde.StatusNotifierItem-", 0), 0u);
    EXPECT_TRUE(watcher.HasOwner(item));

    TPeer& host = Peer();
    EXPECT_EQ(GetString(host, item, "Category"), "ApplicationStatus");
    EXPECT_EQ(GetString(host, item, "Status"), "Active");
    EXPECT_EQ(GetString(host, item, "Title"), "Volts");
    EXPECT_NE(GetString(host, item, "Id"), "");
    EXPECT_EQ(GetString(host, item, "Menu"), "<error>"); // no menu object
    TBusMessage isMenu = Get(host, item, "ItemIsMenu");
    DBusMessageIter top, value;
    dbus_bool_t menu = TRUE;
    ASSERT_TRUE(OpenVariant(isMenu.get(), &top, &value));
    dbus_message_iter_get_basic(&value, &menu);
    EXPECT_FALSE(menu);

    const std::vector<TPixmap> pixmaps = GetPixmaps(host, item);
    ASSERT_EQ(pixmaps.size(), 1u);
    EXPECT_EQ(pixmaps[0].width, 2);
    EXPECT_EQ(pixmaps[0].height, 1);
    EXPECT_EQ(pixmaps[0].bytes,
              (std::vector<unsigned char>{0x80, 0xFF, 0x20, 0x10, 0xFF, 0, 0, 0xFF})); // A, R, G, B

    TBusMessage tip = Get(host, item, "ToolTip");
    ASSERT_TRUE(OpenVariant(tip.get(), &top, &value));
    DBusMessageIter fields;
    dbus_message_iter_recurse(&value, &fields);
    dbus_message_iter_next(&fields); // icon name
    dbus_message_iter_next(&fields); // icon pixmaps
    const char* title = nullptr;
    dbus_message_iter_get_basic(&fields, &title);
    EXPECT_STREQ(title, "Volts");

    TBusMessage all = Call(host, item, "org.freedesktop.DBus.Properties", "GetAll");
    ASSERT_TRUE(all);
    EXPECT_STREQ(dbus_message_get_signature(all.get()), "a{sv}");
}

TEST_F(SniTray, ChangesAreSignalledAndLargeOrEmptyPicturesArePublishedSafely) {
    TPeer& watcher = Peer("org.kde.StatusNotifierWatcher");
    TqTrayIcon& icon = Icon(TPixelBuffer(16, 16, 0xFF00FF00), "Volts");
    ASSERT_TRUE(PumpUntil([&] { return watcher.registered.size() == 1; }));
    const std::string item = watcher.registered[0];
    TPeer& host = Peer();

    icon.SetToolTip("Amps");
    ASSERT_TRUE(PumpUntil([&] { return host.heard.size() >= 2; }));
    EXPECT_EQ(host.heard, (std::vector<std::string>{"NewTitle", "NewToolTip"}));
    EXPECT_EQ(GetString(host, item, "Title"), "Amps");
    icon.SetToolTip("5 \xB5V"); // not UTF-8: taken as Latin-1
    EXPECT_EQ(GetString(host, item, "Title"), "5 \xC2\xB5V");

    host.heard.clear();
    TIcon large;
    large.SetImage(TPixelBuffer(2000, 2000, 0xFF102030));
    icon.SetIcon(&large);
    ASSERT_TRUE(PumpUntil([&] { return !host.heard.empty(); }));
    EXPECT_EQ(host.heard, (std::vector<std::string>{"NewIcon"}));
    std::vector<TPixmap> pixmaps = GetPixmaps(host, item);
    ASSERT_EQ(pixmaps.size(), 1u);
    EXPECT_EQ(pixmaps[0].width, 256);
    EXPECT_EQ(pixmaps[0].height, 256);
    ASSERT_EQ(pixmaps[0].bytes.size(), 256u * 256u * 4u);
    EXPECT_EQ(std::vector<unsigned char>(pixmaps[0].bytes.end() - 4, pixmaps[0].bytes.end()),
              (std::vector<unsigned char>{0xFF, 0x10, 0x20, 0x30}));

    // A record without a picture: no pixmap at all.
    TNotifyIconData data = icon.NotifyData();
    data.uID = 99;
    data.hIcon = nullptr;
    ASSERT_TRUE(Shell_NotifyIcon(NIM_ADD, data));
    ASSERT_TRUE(PumpUntil([&] { return watcher.registered.size() == 2; }));
    EXPECT_TRUE(GetPixmaps(host, watcher.registered[1]).empty());
    EXPECT_EQ(GetString(host, watcher.registered[1], "Title"), "5 \xC2\xB5V");
    EXPECT_TRUE(Shell_NotifyIcon(NIM_DELETE, data));
    EXPECT_TRUE(PumpUntil([&] { return !host.HasOwner(watcher.registered[1]); }));
}

TEST_F(SniTray, ActivateContextMenuAndSecondaryActivateAreClicks) {
    TPeer& watcher = Peer("org.kde.StatusNotifierWatcher");
    TPeer& host = Peer();
    const auto descriptors = OpenDescriptors();
    TqTrayIcon& icon = Icon(TPixelBuffer(16, 16, 0xFF00FF00), "Volts");
    ASSERT_TRUE(PumpUntil([&] { return watcher.registered.size() == 1; }));
    const std::string item = watcher.registered[0];

    Invoke(host, item, "Activate");
    EXPECT_EQ(log, (std::vector<std::string>{"click"}));
    Invoke(host, item, "Activate"); // within the double-click time
    EXPECT_EQ(log, (std::vector<std::string>{"click", "dblclick"}));
    Backend().AdvanceClock(TrayDoubleClickMs + 1);
    Invoke(host, item, "Activate");
    EXPECT_EQ(log, (std::vector<std::string>{"click", "dblclick", "click"}));

    log.clear();
    Backend().AdvanceClock(TrayDoubleClickMs + 1);
    Invoke(host, item, "ContextMenu");
    Invoke(host, item, "SecondaryActivate");
    Invoke(host, item, "Scroll");
    EXPECT_EQ(log, (std::vector<std::string>{"rclick", "mclick"}));

    icon.SetActive(false); // its connection, socket and timer descriptors go with it
    EXPECT_TRUE(PumpUntil([&] { return !host.HasOwner(item); }));
    EXPECT_EQ(OpenDescriptors(), descriptors);
}

TEST_F(SniTray, TheItemRegistersAgainWithANewWatcherAndWithTheFirstOne) {
    env.Set("QV_TRAY", "sni");
    TqTrayIcon& icon = Icon(TPixelBuffer(16, 16, 0xFF00FF00), "Volts");
    PumpUntil([] { return true; });
    TPeer& first = Peer("org.kde.StatusNotifierWatcher"); // after the icon
    ASSERT_TRUE(PumpUntil([&] { return first.registered.size() == 1; }));
    const std::string item = first.registered[0];

    peers.clear(); // the watcher ends
    TPeer& second = Peer();
    ASSERT_TRUE(PumpUntil([&] { return second.Own("org.kde.StatusNotifierWatcher"); }));
    ASSERT_TRUE(PumpUntil([&] { return second.registered.size() == 1; }));
    EXPECT_EQ(second.registered[0], item);

    icon.SetActive(false); // the name goes with the item
    EXPECT_TRUE(PumpUntil([&] { return !second.HasOwner(item); }));
}

TEST_F(SniTray, BalloonsAreNotificationsAndALostBusBreaksNothing) {
    TPeer& watcher = Peer("org.kde.StatusNotifierWatcher");
    TqTrayIcon& icon = Icon(TPixelBuffer(16, 16, 0xFF00FF00), "Volts");
    ASSERT_TRUE(PumpUntil([&] { return watcher.registered.size() == 1; }));
    EXPECT_FALSE(icon.ShowBalloon("Nobody shows this")); // no notification daemon

    TPeer& notifications = Peer("org.freedesktop.Notifications");
    EXPECT_TRUE(icon.ShowBalloon("Overvoltage", 3000));
    ASSERT_TRUE(PumpUntil([&] { return notifications.notes.size() == 1; }));
    EXPECT_EQ(notifications.notes[0].summary, "Volts");
    EXPECT_EQ(notifications.notes[0].body, "Overvoltage");
    EXPECT_EQ(notifications.notes[0].timeout, 3000);

    peers.clear();
    bus->Stop();
    for (int i = 0; i < 20; ++i) { // the loss is noticed in the loop
        Backend().WaitForEvents(5);
        Application().ProcessMessages();
    }
    icon.SetToolTip("Amps");
    EXPECT_FALSE(icon.ShowBalloon("Gone"));
    icon.SetActive(false);
}

TEST_F(SniTrayOnX11, TheX11BackendTakesTheWatchersTray) {
    const auto bus = TPrivateBus::Start();
    ASSERT_TRUE(bus);
    TEnvironment env;
    env.Set("DBUS_SESSION_BUS_ADDRESS", bus->Address().c_str());
    env.Set("QV_TRAY", nullptr);
    TPeer watcher(bus->Address());
    ASSERT_TRUE(watcher.Own("org.kde.StatusNotifierWatcher"));
    EXPECT_STREQ(m_x11->TrayShell().Name(), "sni");
    EXPECT_EQ(m_x11->XEmbedTray(), nullptr);
}

#else

TEST(SniTray, NeedsDBus) {
    GTEST_SKIP() << "built without libdbus-1: the StatusNotifierItem tray is not there";
}

#endif
