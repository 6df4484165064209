#!/bin/sh
# Draws the pictures of docs/images anew: pictures.sh BUILD_FOLDER [FOLDER]. Needs the themes that the tours need, and
# ImageMagick. The moving one is tests/desktop/shell/moving_picture.py's.
set -eu
build=$1
to=${2:-$(dirname "$0")/../docs/images}
parts=$(mktemp -d)
trap 'rm -rf "$parts"' EXIT
export QT_QPA_PLATFORM=offscreen

scene() { # FACTOR NAME SCENE WORD...
    factor=$1 name=$2 of=$3
    shift 3
    QT_SCALE_FACTOR=$factor "$build/tools/view_gallery" "$of" "$parts/$name.png" wait=700 "$@"
}
window() { # NAME WORD...
    name=$1
    shift
    QT_SCALE_FACTOR=2 "$build/tests/quick/window_pictures" "$parts/$name.png" "$@" still
}
# Few colours make small files; dots in place of the missing ones would be seen.
keep() { # NAME PART...
    name=$1
    shift
    (cd "$parts" && convert "$@" +append +dither -colors 200 "PNG8:$name.keep.png")
    mv "$parts/$name.keep.png" "$to/$name.png"
}

scene 2 popover-light popover light still update scale=1.15 hover=150,110
scene 2 popover-dark popover dark still filter=1
scene 2 popover-first first light still
scene 1 glass-light popover glass still scale=1.15
scene 1 glass-dark popover glass dark still update
scene 1 large popover large still
scene 1 rtl popover rtl still update
scene 1.5 rows-light states light size=340x720
scene 1.5 rows-dark states dark size=340x720 keys=Down,Down
window settings-light settings light blends
window settings-dark settings dark blends
window about about light
window alert alert light

for name in popover-light popover-dark popover-first; do keep $name $name.png; done
# Their cards differ from the ground by less than few colours tell apart.
for name in settings-light settings-dark about alert; do convert "$parts/$name.png" -strip "$to/$name.png"; done
keep popover-glass glass-light.png glass-dark.png
keep popover-large-rtl large.png rtl.png
keep rows rows-light.png rows-dark.png
