#!/usr/bin/python3
"""Uses the player as a person does who doesn't see it: through AT-SPI alone.

Called with an MP3 file of 20 seconds and the title of the player's window. Ends with 0, or names what
isn't as it should be.
"""

import sys
import time
import warnings

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, Gio, GLib  # noqa: E402

# Newer releases of the library have other names for the same calls.
warnings.simplefilter("ignore", DeprecationWarning)

TITLE = sys.argv[2]


def fail(text):
    sys.exit(f"assistive_program.py: {text}")


def wait(condition, what, limit=20):
    """Returns the first true answer of a condition."""
    end = time.monotonic() + limit
    while time.monotonic() < end:
        try:
            answer = condition()
        except GLib.Error:  # what was asked has just gone
            answer = None
        if answer:
            return answer
        time.sleep(0.05)
    fail(f"{what}: waited in vain")


def expect(actual, expected, what):
    if actual != expected:
        fail(f"{what}: {actual!r} instead of {expected!r}")


def children(node):
    found = [node.get_child_at_index(i) for i in range(node.get_child_count())]
    return [child for child in found if child is not None]


def everything(node):
    yield node
    for child in children(node):
        yield from everything(child)


def application():
    for node in children(Atspi.get_desktop(0)):
        if node.get_name() == "zvonivec":
            return node
    return None


def window(name):
    for node in children(application()):
        if node.get_name() == name and has(node, Atspi.StateType.SHOWING):
            return node
    return None


def has(node, state):
    return node.get_state_set().contains(state)


def usable(node):
    return has(node, Atspi.StateType.ENABLED) and has(node, Atspi.StateType.SENSITIVE)


def role(node):
    """The name of a role. Newer releases of AT-SPI say "button" for a push button."""
    return node.get_role_name().replace("push button", "button")


def named(container, name, its_role=None):
    for node in everything(container):
        if node.get_name() == name and its_role in (None, role(node)):
            return node
    return None


def player(name, its_role=None):
    node = named(window(TITLE), name, its_role)
    return node or fail(f"there is no {name}")


def actions(node):
    return [node.get_action_name(i).lower() for i in range(node.get_n_actions())]


def act(node, action="press"):
    known = actions(node)
    if action not in known:
        fail(f"{node.get_name()} can't {action}: {known}")
    began = time.monotonic()
    node.do_action(known.index(action))
    if time.monotonic() - began > 3:
        fail(f"{node.get_name()} answers late")


def text(node):
    return Atspi.Text.get_text(node, 0, Atspi.Text.get_character_count(node))


def menu():
    return window("Nabídka")


def choose(name):
    act(wait(lambda: window(TITLE), "the window"), "showmenu")
    shown = wait(menu, "the menu")
    act(named(shown, name))
    return shown


def alert_with(part, title):
    def found():
        for node in children(application()):
            if node.get_role_name() == "alert" and part in node.get_name():
                return node
        return None

    box = wait(found, f"the box with {part}")
    expect(box.get_description(), title, "the box's description")
    act(next(n for n in everything(box) if role(n) == "button"))
    wait(lambda: found() is None, "the end of the box")


def switch_on():
    bus = Gio.bus_get_sync(Gio.BusType.SESSION)
    bus.call_sync(
        "org.a11y.Bus", "/org/a11y/bus", "org.freedesktop.DBus.Properties", "Set",
        GLib.Variant("(ssv)", ("org.a11y.Status", "IsEnabled", GLib.Variant("b", True))),
        None, Gio.DBusCallFlags.NONE, 10000)


def main(path):
    switch_on()
    # Nothing is remembered: each question is answered by the player.
    Atspi.get_desktop(0).set_cache_mask(Atspi.Cache.NONE)
    wait(application, "the program")
    wait(lambda: window(TITLE), "the window")

    # Without a file.
    names = [node.get_name() for node in children(window(TITLE))]
    expect(names[:7], ["Minimalizovat", "Zavřít", "Vítejte v programu " + TITLE, "50% hlasitost",
                       "Hlasitost", "Zastavit", "Otevřít soubor MP3"], "the window's content")
    expect(usable(player("Přehrát", "button")), False, "Přehrát without a file")
    expect(usable(player("Otevřít soubor MP3")), True, "the logo")

    act(window(TITLE), "showmenu")
    shown = wait(menu, "the menu")
    expect(shown.get_role_name(), "popup menu", "the menu's role")
    entries = [(node.get_name(), node.get_role_name(), usable(node), bool(actions(node)))
               for node in children(shown)]
    dimmed = ("menu item", False, False)
    live = ("menu item", True, True)
    line = ("", "separator", False, False)
    expect(entries, [("Otevřít...", *live), ("Vlastnosti", *dimmed), line,
                     ("Vždy navrchu", "check box", True, True),
                     ("Přehrávat opakovaně", "check box", True, True),
                     ("Zesílit hlasitost o 10%", *live), ("Zeslabit hlasitost o 10%", *live),
                     line, ("Přetočit dozadu", *dimmed), ("Pozastavit", *dimmed),
                     ("Přehrát", *dimmed), ("Zastavit", *dimmed), ("Přetočit dopředu", *dimmed),
                     line, ("O programu", *live), ("Minimalizovat", *live), ("Konec", *live)],
           "the menu")
    expect(has(named(shown, "Otevřít..."), Atspi.StateType.FOCUSED), True, "the menu's focus")
    expect(has(named(shown, "Přehrávat opakovaně"), Atspi.StateType.CHECKED), True, "repeat")
    act(named(shown, "Vždy navrchu"))
    wait(lambda: menu() is None, "the end of the menu")

    # Open a file.
    act(player("Otevřít soubor MP3"))
    dialog = wait(lambda: window("Otevřít soubor MP3"), "the dialog")
    field = next(n for n in everything(dialog)
                 if n.get_role_name() == "text" and n.get_name().startswith("Název souboru"))
    Atspi.EditableText.set_text_contents(field, path)
    accept = wait(lambda: next((n for n in everything(dialog)
                                if role(n) == "button" and usable(n)
                                and n.get_name().replace("&", "") in ("Otevřít", "Open")), None),
                  "the dialog's button")
    act(accept)
    wait(lambda: usable(player("Přehrát", "button")), "the playing look")

    # Play, pause, seek.
    bar = player("Pozice")
    expect(bar.get_role_name(), "slider", "the bar's role")
    expect(round(Atspi.Value.get_maximum_value(bar)), 20, "the bar's end")
    wait(lambda: Atspi.Value.get_current_value(bar) > 0, "the bar to move")
    wait(lambda: text(player("Čas")) >= "00:01", "the time to run")
    expect(text(player("Délka")), "00:20", "the length")
    wait(lambda: any("Přehrávání: " in name for name in
                     (node.get_name() for node in children(window(TITLE)))), "the track's line")
    act(player("Pozastavit", "button"))
    wait(lambda: [n for n in children(window(TITLE))
                  if n.get_name() == "Pozastavit" and n.get_role_name() in ("image", "icon")],
         "the mark of the pause")
    Atspi.Value.set_current_value(bar, 10)
    wait(lambda: text(player("Čas")) == "00:10", "the seek to 10 seconds")
    act(bar, "increase")
    wait(lambda: text(player("Čas")) == "00:15", "the seek by 5 seconds")
    act(bar, "decrease")
    wait(lambda: text(player("Čas")) == "00:10", "the seek back")
    expect(round(Atspi.Value.get_current_value(bar)), 10, "the bar's value")

    # The volume.
    loudspeaker = player("Hlasitost")
    expect(Atspi.Value.get_current_value(loudspeaker), 50, "the volume")
    act(loudspeaker, "increase")
    wait(lambda: Atspi.Value.get_current_value(loudspeaker) == 60, "a higher volume")
    player("60% hlasitost")
    act(loudspeaker, "decrease")
    wait(lambda: Atspi.Value.get_current_value(loudspeaker) == 50, "a lower volume")

    # The menu's switches and boxes.
    choose("Přehrávat opakovaně")
    act(window(TITLE), "showmenu")
    shown = wait(menu, "the menu")
    expect(has(named(shown, "Přehrávat opakovaně"), Atspi.StateType.CHECKED), False, "repeat")
    expect(has(named(shown, "Vždy navrchu"), Atspi.StateType.CHECKED), True, "always on top")
    expect(usable(named(shown, "Vlastnosti")), True, "Vlastnosti")
    act(named(shown, "Vlastnosti"))
    alert_with("Délka skladby: 00:20", TITLE + " - vlastnosti souboru MP3")
    choose("O programu")
    alert_with("CMake", "O programu " + TITLE)

    choose("Konec")
    wait(lambda: application() is None, "the end")
    print("done")


if __name__ == "__main__":
    main(sys.argv[1])
