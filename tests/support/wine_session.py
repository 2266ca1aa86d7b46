"""The environment of a Wine test session (see tools/wine/session) for test drivers that run
outside Wine: its prefix, its display and the settings every program of it runs with."""
import os


def wine_path(path):
    """The name a program under Wine gives a file of this machine (drive Z: is its root)."""
    return "Z:" + path.replace("/", "\\")


def session_env(session):
    env = dict(os.environ)
    env.update(WINEPREFIX=os.path.join(session, "prefix"), WINEDEBUG="-all", WINEARCH="win64",
               WINEDLLOVERRIDES="mscoree=d;mshtml=d;winemenubuilder.exe=d")
    with open(os.path.join(session, "display")) as f:
        env["DISPLAY"] = f.read().strip()
    return env
