#!/usr/bin/python3
"""Reads the editors of "PROGRAM --tree" as a screen reader does: over AT-SPI, on a bus and a display of its own.

Usage: accessible_tree.py PROGRAM, inside of dbus-run-session and xvfb-run.
"""
import os
import subprocess
import sys
import time

import pyatspi
from gi.repository import GLib


def wait(condition, what):
    """Lets events come in until the condition gives something."""
    end = time.monotonic() + 30  # seconds
    while time.monotonic() < end:
        while GLib.MainContext.default().iteration(False):
            pass
        found = condition()
        if found:
            return found
        time.sleep(0.05)
    sys.exit(f"FAIL: {what}")


def check(condition, what):
    if not condition:
        sys.exit(f"FAIL: {what}")


def below(accessible):
    for child in filter(None, accessible):
        yield child
        yield from below(child)


def read(program):
    def application():
        return next((found for found in pyatspi.Registry.getDesktop(0)
                     if found is not None and found.get_process_id() == program.pid and found.childCount), None)

    events = []
    pyatspi.Registry.registerEventListener(
        lambda event: events.append((event.type.name, event.source.name if event.source else "")),
        "object:property-change:accessible-name", "object:property-change:accessible-value",
        "object:state-changed:checked")
    tree = wait(application, "the program is not in the tree")

    def named(name):
        # Names are read again, as another one than the tool remembers may have come.
        tree.clear_cache()
        return next((found for found in below(tree) if found.name == name), None)

    wait(lambda: named("Roughness, value"), "no named field")
    nameless = [found.getRoleName() for found in below(tree)
                if found.getState().contains(pyatspi.STATE_FOCUSABLE) and not found.name
                and found.getRoleName() not in ("frame", "filler")]  # windows, and the host's scroll area
    check(not nameless, f"nameless: {nameless}")
    fields = [found.name for found in below(named("Tint")) if found.getState().contains(pyatspi.STATE_EDITABLE)]
    check(fields == ["Tint, red", "Tint, green", "Tint, blue", "Tint, alpha"], f"colours: {fields}")

    value = named("Roughness, slider").queryValue()
    check((value.minimumValue, value.maximumValue) == (0.0, 4.0), "range")
    value.currentValue = 2.5
    field = named("Roughness, value").queryText()
    wait(lambda: field.getText(0, -1) == "2.5", "a value from the tool does not arrive")
    check(value.currentValue == 2.5, "value")
    wait(lambda: ("object:property-change:accessible-value", "Roughness, slider") in events, "no news of the value")

    named("Name, value").queryEditableText().setTextContents("Gloss")
    wait(lambda: ("object:property-change:accessible-name", "Gloss, value") in events, "no news of the title")

    section = named("Surface")
    check(section.getState().contains(pyatspi.STATE_EXPANDED), "an open section is not expanded")
    actions = section.queryAction()
    actions.doAction([actions.getName(i) for i in range(actions.nActions)].index("Toggle"))
    wait(lambda: not named("Surface").getState().contains(pyatspi.STATE_EXPANDED), "the section does not fold")
    wait(lambda: any(kind.startswith("object:state-changed") and name == "Surface, section" for kind, name in events),
         "no news of the section")

    print("PASS")


program = subprocess.Popen([sys.argv[1], "--tree"], stdout=subprocess.DEVNULL,
                           env=dict(os.environ, QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1", QT_QPA_PLATFORM="xcb"))
try:
    read(program)
finally:
    program.kill()
    program.wait()
