# SPDX-License-Identifier: MIT
"""A host for status icons as a desktop's panel offers it on the session bus. Prints "ready", then a line for
each item that registers. Ends on SIGTERM."""
import dbus
import dbus.service
from dbus.mainloop.glib import DBusGMainLoop
from gi.repository import GLib

NAME = "org.kde.StatusNotifierWatcher"
PROPERTIES = "org.freedesktop.DBus.Properties"
# The toolkit asks for the interface before it trusts a property.
DESCRIPTION = f"""<node><interface name="{NAME}">
<method name="RegisterStatusNotifierItem"><arg type="s" direction="in"/></method>
<property name="IsStatusNotifierHostRegistered" type="b" access="read"/>
</interface><interface name="{PROPERTIES}">
<method name="Get"><arg type="s" direction="in"/><arg type="s" direction="in"/><arg type="v" direction="out"/></method>
</interface></node>"""


class Watcher(dbus.service.Object):
    @dbus.service.method(NAME, in_signature="s", sender_keyword="sender")
    def RegisterStatusNotifierItem(self, service, sender=None):
        print("item", service if not service.startswith("/") else sender, flush=True)

    @dbus.service.method(PROPERTIES, in_signature="ss", out_signature="v")
    def Get(self, interface, name):
        return {"IsStatusNotifierHostRegistered": dbus.Boolean(True), "ProtocolVersion": dbus.Int32(0)}[name]

    @dbus.service.method("org.freedesktop.DBus.Introspectable", out_signature="s")
    def Introspect(self):
        return DESCRIPTION


DBusGMainLoop(set_as_default=True)
bus = dbus.SessionBus()
name = dbus.service.BusName(NAME, bus)
watcher = Watcher(bus, "/StatusNotifierWatcher")
print("ready", flush=True)
GLib.MainLoop().run()
