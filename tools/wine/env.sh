# Sourced by the Wine scripts: the test session's prefix, display and Wine settings.
# $1 (or WINE_SESSION_DIR) is the session folder, normally <build>/wine.
WINE_SESSION_DIR=${WINE_SESSION_DIR:-$1}
export WINEPREFIX="$WINE_SESSION_DIR/prefix"
export WINEDEBUG=-all
# No Mono/Gecko install prompts and no desktop menu entries in the test prefix.
export WINEDLLOVERRIDES="mscoree=d;mshtml=d;winemenubuilder.exe=d"
export WINEARCH=win64
if [ -f "$WINE_SESSION_DIR/display" ]; then
  DISPLAY=$(cat "$WINE_SESSION_DIR/display")
  export DISPLAY
fi
