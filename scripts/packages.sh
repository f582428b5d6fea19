# Read by common.sh. Every script takes the lists that it needs.
# shellcheck shell=bash disable=SC2034

# What the scripts take from Debian 12, by purpose.

# Compiler driver, generator and headers: the toolkit, ICU's regular expressions, the Trash, X input, PNG, and
# the unpacking of it. The compiler of translation catalogues.
build_packages=(
    cmake g++ ninja-build pkg-config
    qt6-base-dev qt6-l10n-tools libicu-dev libglib2.0-dev
    libxcb1-dev libxcb-xinput-dev libxcb-shape0-dev libpng-dev libisal-dev
)
# npm, which fetches the fonts that Debian doesn't have. Debian's brings hundreds of packages along, so any other
# one will do if whoever builds finds it.
font_packages=(npm)
builder_path=$PATH
if ((EUID == 0)); then
    builder_path=$ordinary_path
fi
if PATH=$builder_path command -v npm >/dev/null; then
    font_packages=()
fi
# The toolkit's SVG plugin, which draws the symbols. Previews of WebP and TIFF, the fonts of the screens, and
# `gsettings`, which tells where some desktops' capture tools save: the program works without these.
runtime_packages=(libqt6svg6 qt6-image-formats-plugins fonts-inter fonts-jetbrains-mono libglib2.0-bin)
# A private desktop: X server, bus, accessibility bus, window manager, panel, notification server, wallpaper;
# the capture tool; and what drives it all: Python with GLib's bus, X events, window lists, pictures.
desktop_packages=(
    xvfb dbus-daemon at-spi2-core xfwm4 xfce4-panel xfconf dunst adwaita-icon-theme librsvg2-common feh
    xfce4-screenshooter
    python3 python3-gi xdotool x11-utils x11-xserver-utils xclip imagemagick
)
# The other panel that the tests use, whose tray is XEmbed, with a window manager and a compositor for it. The
# settings' descriptions of two desktops' capture tools, the translations of a third one's folder name, and the
# compiler for the descriptions that Debian doesn't have. Fonts that stand in for missing ones.
test_packages=(
    openbox tint2 picom fonts-dejavu-core
    gnome-screenshot mate-utils-common gnome-shell-common libglib2.0-dev-bin
)
# The compiler that brings a fuzzer, with its libraries.
fuzz_packages=(clang-19 libclang-rt-19-dev)
# Formatters and linters, for C++ (the benchmarks' too, which include their library), shell, Python, the desktop
# entry and the software centre's description.
lint_packages=(
    libbenchmark-dev
    clang-19 clang-format-19 clang-tidy-19 shellcheck python3 python3-pyflakes desktop-file-utils appstream
)
# What the program is measured with, and beside: the benchmark library, the tracer that counts its wake-ups, and
# two programs that live in a panel as it does.
bench_packages=(libbenchmark-dev strace nm-tray flameshot)
