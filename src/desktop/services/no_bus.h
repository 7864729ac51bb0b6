#pragma once

namespace glimra::desktop {

inline constexpr const char* kSessionBusVariable = "DBUS_SESSION_BUS_ADDRESS";
/// In that variable: there is no bus, and none shall be started. Only this program's own environment says so
/// (bus.h, `startNoBus`).
inline constexpr const char* kNoBusAddress = "disabled:";

} // namespace glimra::desktop
