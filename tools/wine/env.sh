# Sourced by the Wine scripts: the test session's prefix, display and Wine settings.
# WINE_SESSION_DIR is the session folder, normally <build>/wine.
# WINE_SESSION_DIR must be set by the caller (dash passes no arguments to ".").
export WINEPREFIX="$WINE_SESSION_DIR/prefix"
export WINEDEBUG=-all
# No Mono/Gecko install prompts and no desktop menu entries in the test prefix.
export WINEDLLOVERRIDES="mscoree=d;mshtml=d;winemenubuilder.exe=d"
export WINEARCH=win64
if [ -f "$WINE_SESSION_DIR/display" ]; then
  DISPLAY=$(cat "$WINE_SESSION_DIR/display")
  export DISPLAY
fi
