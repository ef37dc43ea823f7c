# scripts/xvfb-common.sh: what the screenshot scripts share, sourced by them.
#   installScreenshotTools   installs Xvfb, xdotool and ImageMagick where one is missing
#   startXvfb WxH            starts a virtual display on a free number; sets xvfb and DISPLAY

installScreenshotTools()
{
    local need=() tool sudo=""
    for tool in Xvfb xdotool import; do command -v "$tool" > /dev/null || need+=("$tool"); done
    [ ${#need[@]} -eq 0 ] && return 0
    [ "$(id -u)" -ne 0 ] && sudo="sudo"
    export DEBIAN_FRONTEND=noninteractive
    $sudo apt-get update
    $sudo apt-get install -y --no-install-recommends xvfb xdotool imagemagick
}

startXvfb()
{
    local number=77
    while [ -e "/tmp/.X$number-lock" ]; do number=$((number + 1)); done
    Xvfb ":$number" -screen 0 "$1x24" -nolisten tcp &
    xvfb=$!
    sleep 1
    export DISPLAY=":$number"
}
