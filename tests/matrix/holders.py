"""Who knows that the machine is held awake: the services that hold it, asked what they list."""

import dbus

SESSION_MANAGER = "org.gnome.SessionManager"
SUSPEND, IDLE = 4, 8  # flags of Inhibit


class _Holder:
    """`words` say in the document who lists the session and how."""

    def __init__(self, environment):
        self.environment = environment


class LoginManager(_Holder):
    words = "logind lists an `idle` block"

    def is_held(self):
        return any(row[0] == "idle" and row[3] == "block" for row in self.environment.system_bus.inhibitors())


class PowerManager(_Holder):
    """The interface of Xfce's power manager."""

    words = "xfce4-power-manager counts an inhibition"

    def is_held(self):
        name, path = "org.freedesktop.PowerManagement", "/org/freedesktop/PowerManagement/Inhibit"
        return bool(self.environment.interface(name, path, name + ".Inhibit").HasInhibit())


class PolicyAgent(_Holder):
    words = "powerdevil lists Vigilo against sleep, not against a dark screen"

    interrupt_session, change_screen_settings = 1, 4

    def is_held(self):
        name = "org.kde.Solid.PowerManagement.PolicyAgent"
        agent = self.environment.interface(name, "/org/kde/Solid/PowerManagement/PolicyAgent", name)
        return (
            any(str(row[0]) == "Vigilo" for row in agent.ListInhibitions())
            and bool(agent.HasInhibition(dbus.UInt32(self.interrupt_session)))
            and not agent.HasInhibition(dbus.UInt32(self.change_screen_settings))
        )


class SessionManager(_Holder):
    """The interface of the session managers of GNOME and MATE."""

    def __init__(self, environment, program):
        super().__init__(environment)
        self.words = program + " lists Vigilo against suspend, not against a dark screen"

    def is_held(self):
        manager = self.environment.interface(SESSION_MANAGER, "/org/gnome/SessionManager", SESSION_MANAGER)
        inhibitors = [
            self.environment.interface(SESSION_MANAGER, path, SESSION_MANAGER + ".Inhibitor")
            for path in manager.GetInhibitors()
        ]
        flags = [int(one.GetFlags()) for one in inhibitors if str(one.GetAppId()) in ("Vigilo", "io.github.vigilo.Vigilo")]
        return bool(flags) and all(value & SUSPEND and not value & IDLE for value in flags)
