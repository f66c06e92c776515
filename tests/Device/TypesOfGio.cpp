// Threads of the kit meet types of GIO for the first time, in whichever order.
#include "Network/Network.h"
#include "Parloquin/Platform/Linux/SystemBus.h"
#include "Parloquin/Platform/SerialQueue.h"

#include <dlfcn.h>

#include <map>
#include <set>

namespace {

/// Types that were given an interface, each with the thread that did it, since the program began.
struct Made {
    std::mutex mutex;
    std::map<GType, std::thread::id> types;

    static Made &shared()
    {
        static Made instance;
        return instance;
    }
};

} // namespace

// GIO calls this one in place of the library's.
extern "C" Q_DECL_EXPORT void g_type_add_interface_static(
    GType type, GType interface, const GInterfaceInfo *info)
{
    {
        const std::lock_guard lock(Made::shared().mutex);
        Made::shared().types[type] = std::this_thread::get_id();
    }
    static const auto add = reinterpret_cast<decltype(&g_type_add_interface_static)>(
        dlsym(RTLD_NEXT, "g_type_add_interface_static"));
    add(type, interface, info);
}

namespace {

/// The types of properties of every class there is below this one.
void findNamed(GType parent, std::set<GType> &named)
{
    if (gpointer of = g_type_class_peek(parent)) {
        guint count = 0;
        GParamSpec **const properties = g_object_class_list_properties(G_OBJECT_CLASS(of), &count);
        for (guint i = 0; i < count; ++i)
            named.insert(properties[i]->value_type);
        g_free(properties);
    }
    guint count = 0;
    GType *const children = g_type_children(parent, &count);
    for (guint i = 0; i < count; ++i)
        findNamed(children[i], named);
    g_free(children);
}

// A thread that gives a type an interface waits for the lock under which another may be making a
// class that names this type, and waits for it: neither goes on, and the process does not end.
TEST(SerialQueue, MeetsNoTypeOfGioForTheFirstTimeThatAClassNames)
{
    qputenv("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/no/such/bus");
    SerialQueue(u"bus"_s).sync(
        [] { EXPECT_FALSE(SystemBus({}, [](GDBusMessage *) {}).connect(nullptr)); });
    RawServer server;
    server.answer("/", RawServer::http(200, "1234"));
    EXPECT_EQ(Get(server.url({})).outcome(), "200 application/json 4");

    std::set<GType> named;
    findNamed(G_TYPE_OBJECT, named);
    ASSERT_TRUE(named.contains(G_TYPE_SOCKET_ADDRESS));
    const std::lock_guard lock(Made::shared().mutex);
    ASSERT_TRUE(Made::shared().types.contains(G_TYPE_SOCKET_ADDRESS));
    for (const auto &[type, thread] : Made::shared().types)
        EXPECT_TRUE(thread == std::this_thread::get_id() || !named.contains(type))
            << g_type_name(type);
}

} // namespace
