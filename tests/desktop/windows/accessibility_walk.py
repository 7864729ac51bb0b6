"""Walks the accessible objects of PROGRAM: what can be operated has name, role and state, and acts."""
import subprocess
import sys
import time

import pyatspi

NEED_NAMES = {
    pyatspi.ROLE_PUSH_BUTTON, pyatspi.ROLE_TOGGLE_BUTTON, pyatspi.ROLE_CHECK_BOX, pyatspi.ROLE_RADIO_BUTTON,
    pyatspi.ROLE_COMBO_BOX, pyatspi.ROLE_SPIN_BUTTON, pyatspi.ROLE_SLIDER}


def walk(node):
    yield node
    for child in node:
        if child is not None:
            yield from walk(child)


def shown(window):
    return [n for n in walk(window) if n.getState().contains(pyatspi.STATE_SHOWING)]


def wait(what, find):
    for _ in range(100):
        found = find()
        if found:
            return found
        time.sleep(0.1)
    sys.exit(f"no {what}")


def window(title):
    def find():
        for app in pyatspi.Registry.getDesktop(0):
            for top in app or []:
                if top and top.name.startswith(title) and top.getState().contains(pyatspi.STATE_SHOWING):
                    return top
    return wait(f"window {title}", find)


def control(top, name):
    return wait(name, lambda: next((n for n in shown(top) if n.name.startswith(name) and n.getRole() in NEED_NAMES), None))


def act(node):
    node.queryAction().doAction(0)


def check(title, least):
    operable = [n for n in shown(window(title)) if n.getState().contains(pyatspi.STATE_FOCUSABLE) or
                n.getRole() in NEED_NAMES]
    assert len(operable) >= least, f"{title}: only {len(operable)} controls"
    for node in operable:
        assert node.name or node.getRole() not in NEED_NAMES, f"{title}: a {node.getRoleName()} without a name"


def check_toggles(title, name):
    box = control(window(title), name)
    was = box.getState().contains(pyatspi.STATE_CHECKED)
    act(box)
    wait(f"change of {name}", lambda: box.getState().contains(pyatspi.STATE_CHECKED) != was)


program = subprocess.Popen([sys.argv[1], "--keyboard", "virtual"])
try:
    check("Glimra", 10)
    act(control(window("Glimra"), "Set Colors"))
    check("Set Colors", 40)
    check_toggles("Set Colors", "Single color")
    act(control(window("Set Colors"), "Cancel"))
    act(control(window("Glimra"), "Set Colors"))
    act(control(window("Set Colors"), "Map Action Keys"))
    check("Action Keys", 30)
finally:
    program.terminate()
    program.wait()
