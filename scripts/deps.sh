#!/usr/bin/env bash
# Installs the Debian packages Marble Cove needs; touches apt only when something is missing.
set -euo pipefail

packages=(
  build-essential cmake ninja-build pkg-config ccache
  qt6-base-dev qt6-base-dev-tools qt6-declarative-dev qt6-declarative-dev-tools qt6-svg-dev
  libqt6sql6-sqlite libqt6opengl6-dev libgl-dev zlib1g-dev
  qml6-module-qtqml qml6-module-qtqml-workerscript qml6-module-qtquick qml6-module-qtcore
  qml6-module-qtquick-controls qml6-module-qtquick-templates qml6-module-qtquick-layouts
  qml6-module-qtquick-window qml6-module-qtquick-dialogs qml6-module-qtqml-models
  qml6-module-qttest qml6-module-qtquick-shapes qml6-module-qt-labs-folderlistmodel
  libbenchmark-dev clang libclang-rt-14-dev
  xvfb xauth
  desktop-file-utils appstream lintian fakeroot file python3-pyatspi at-spi2-core dbus-daemon
  fonts-quicksand fonts-noto-color-emoji fonts-dejavu-core fonts-material-design-icons-iconfont
  # The desktop's own save dialog for the picture export (GNOME, and portals in sandboxes).
  qt6-gtk-platformtheme qt6-xdgdesktopportal-platformtheme
)

missing=()
for p in "${packages[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed'; then
    missing+=("$p")
  fi
done

if [ ${#missing[@]} -eq 0 ]; then
  exit 0
fi

sudo=""
if [ "$(id -u)" -ne 0 ]; then sudo="sudo"; fi
echo "Installing: ${missing[*]}"
$sudo apt-get update -qq
DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq --no-install-recommends "${missing[@]}"
