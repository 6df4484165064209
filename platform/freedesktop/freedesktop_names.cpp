#include "platform/freedesktop/freedesktop_names.h"

namespace pintle {
namespace {

void append(std::vector<std::string>& names, std::initializer_list<const char*> more) {
    names.insert(names.end(), more.begin(), more.end());
}

}  // namespace

DesktopNames makeFreedesktopNames() {
    DesktopNames names;
    append(names.remoteDesktops, {"Remmina", "FreeRDP", "rdesktop", "Vinagre", "krdc", "gnome-connections",
                                  "vncviewer", "TigerVNC", "Remote-viewer", "virt-viewer", "Virt-manager",
                                  "VirtualBox", "Vmware", "Nxplayer", "x2goclient", "RustDesk", "Moonlight"});
    append(names.protectedOwners,
           {// Screen lockers and savers.
            "i3lock", "slock", "xlock", "XLock", "XScreenSaver", "xscreensaver", "xsecurelock", "auth_x11",
            "Light-locker", "light-locker", "Xfce4-screensaver", "xfce4-screensaver", "mate-screensaver",
            "Mate-screensaver", "cinnamon-screensaver", "Cinnamon-screensaver", "gnome-screensaver",
            "kscreenlocker_greet", "physlock",
            // Greeters.
            "Lightdm-gtk-greeter", "lightdm-gtk-greeter", "Slick-greeter", "sddm-greeter", "gdm",
            // Dialogs that ask for a password.
            "Polkit-gnome-authentication-agent-1", "polkit-gnome-authentication-agent-1",
            "Polkit-mate-authentication-agent-1", "polkit-mate-authentication-agent-1",
            "polkit-kde-authentication-agent-1", "Lxpolkit", "lxpolkit", "lxqt-policykit-agent",
            "xfce-polkit", "Xfce-polkit", "Gcr-prompter", "gcr-prompter", "Pinentry", "pinentry",
            "Pinentry-gtk-2", "pinentry-gtk-2", "pinentry-gnome3", "pinentry-qt", "Ssh-askpass",
            "ssh-askpass", "SshAskpass", "ksshaskpass", "Ssh-askpass-gnome"});
    return names;
}

}  // namespace pintle
