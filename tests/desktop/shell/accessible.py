"""What an assistive program learns of the applications of a desktop: roles, names, states, texts and actions,
asked over the accessibility bus. Nothing is remembered between two questions, so no answer is stale."""
import contextlib
import re
from dataclasses import dataclass, field

import gi

gi.require_version("Gio", "2.0")
from gi.repository import Gio, GLib  # noqa: E402

from probe import Box  # noqa: E402

ROOT = ("org.a11y.atspi.Registry", "/org/a11y/atspi/accessible/root")
INTERFACE = "org.a11y.atspi."
STATES = """invalid active armed busy checked collapsed defunct editable enabled expandable expanded focusable focused
has-tooltip horizontal iconified modal multi-line multiselectable opaque pressed resizable selectable selected
sensitive showing single-line stale transient vertical visible manages-descendants indeterminate required truncated
animated invalid-entry supports-autocompletion selectable-text is-default visited checkable has-popup
read-only""".split()
PATIENCE = 3000
#: Everything that a question to an application can end with: it is gone, busy or says no.
Refused = GLib.Error


def connect(address):
    flags = Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION
    return Gio.DBusConnection.new_for_address_sync(address, flags, None, None)


def call(bus, name, path, interface, method, signature=None, *arguments, patience=PATIENCE):
    values = GLib.Variant(signature, arguments) if signature else None
    answer = bus.call_sync(name, path, interface, method, values, None, Gio.DBusCallFlags.NONE, patience, None)
    return answer.unpack()


#: What a look asks of each object.
LOOK = ((INTERFACE + "Accessible", "GetState"), (INTERFACE + "Accessible", "GetRoleName"),
        ("org.freedesktop.DBus.Properties", "Get", "Name"), ("org.freedesktop.DBus.Properties", "Get", "Description"),
        (INTERFACE + "Accessible", "GetChildren"))


def ask_at_once(nodes, questions):
    """For each object its answers to the questions, or the reason why one of them has none."""
    answers = [[None] * len(questions) for _ in nodes]
    left = len(nodes) * len(questions)

    def answered(bus, result, place):
        nonlocal left
        left -= 1
        try:
            answers[place[0]][place[1]] = bus.call_finish(result).unpack()
        except Refused as error:
            answers[place[0]][place[1]] = error

    # Its own, so that nothing else is reported meanwhile.
    context = GLib.MainContext()
    context.push_thread_default()
    try:
        for row, node in enumerate(nodes):
            for column, (interface, method, *name) in enumerate(questions):
                values = GLib.Variant("(ss)", (INTERFACE + "Accessible", *name)) if name else None
                node.bus.call(node.name, node.path, interface, method, values, None, Gio.DBusCallFlags.NONE, PATIENCE,
                              None, answered, (row, column))
        while left:
            context.iteration(True)
    finally:
        context.pop_thread_default()
    return [next((each for each in answer if isinstance(each, Refused)), answer) for answer in answers]


@dataclass
class Seen:
    """One object as it was at the moment of the look, with all below it."""
    node: "Node"
    role: str
    name: str
    description: str
    states: frozenset
    children: list = field(default_factory=list)
    parent: "Seen" = None

    def all(self):
        yield self
        for child in self.children:
            yield from child.all()

    def find_all(self, role=None, name=None, showing=True, state=None):
        """`name` is the whole name or a compiled expression; `role` may be several, divided by |."""
        roles = role.split("|") if role else None
        for each in self.all():
            if roles and each.role not in roles:
                continue
            if name is not None and not (name.search(each.name) if isinstance(name, re.Pattern) else
                                         each.name == name):
                continue
            if showing and "showing" not in each.states:
                continue
            if state and state not in each.states:
                continue
            yield each

    def find(self, role=None, name=None, showing=True, state=None):
        return next(self.find_all(role, name, showing, state), None)

    def texts(self):
        """Every word that is shown, in the order of the tree."""
        return [each.name for each in self.all() if each.name and "showing" in each.states]

    def written(self, depth=0):
        """The tree for people."""
        shown = " ".join(sorted(self.states & {"showing", "focusable", "focused", "checked", "checkable", "selected",
                                               "enabled", "busy", "pressed"}))
        text = f"{'  ' * depth}{self.role} {self.name!r} [{shown}]"
        if self.description:
            text += f" ({self.description})"
        return "\n".join([text] + [child.written(depth + 1) for child in self.children])


class Node:
    """One object of an application. Raises Refused when it is gone."""

    def __init__(self, bus, name, path):
        self.bus, self.name, self.path = bus, name, path

    def ask(self, interface, method, signature=None, *arguments):
        return call(self.bus, self.name, self.path, INTERFACE + interface, method, signature, *arguments)

    def property(self, interface, name):
        return call(self.bus, self.name, self.path, "org.freedesktop.DBus.Properties", "Get", "(ss)",
                    INTERFACE + interface, name)[0]

    def children(self):
        return self.those(self.ask("Accessible", "GetChildren")[0])

    def those(self, addresses):
        return [Node(self.bus, name, path) for name, path in addresses if not path.endswith("/null")]

    def look(self, depth=40):
        """This object and so many levels below it. A level's questions are all asked before the first answer is waited
        for, because one that is waited for takes far longer than one that is given."""
        top, level = None, [(self, None)]
        while level:
            answers = ask_at_once([node for node, _ in level], LOOK if depth else LOOK[:-1])
            below = []
            for (node, parent), answer in zip(level, answers):
                if isinstance(answer, Refused):
                    # Rows of a list come and go while it is read.
                    if not top:
                        raise answer
                    continue
                (bits,), (role,), (name,), (description,), *children = answer
                states = bits[0] | bits[1] << 32
                seen = Seen(node, role, name, description,
                            frozenset(name for bit, name in enumerate(STATES) if states >> bit & 1), parent=parent)
                if parent:
                    parent.children.append(seen)
                top = top or seen
                below += [(each, seen) for each in node.those(children[0][0])] if children else []
            level, depth = below, depth - 1
        return top

    def box(self):
        """On the screen, in pixels from its top left corner."""
        return Box(*self.ask("Component", "GetExtents", "(u)", 0)[0])

    def text(self):
        return self.ask("Text", "GetText", "(ii)", 0, -1)[0]

    def value(self):
        return self.property("Value", "CurrentValue")

    def set_value(self, value):
        call(self.bus, self.name, self.path, "org.freedesktop.DBus.Properties", "Set", "(ssv)", INTERFACE + "Value",
             "CurrentValue", GLib.Variant("d", value))

    def write(self, text):
        return self.ask("EditableText", "SetTextContents", "(s)", text)[0]

    def range(self):
        return self.property("Value", "MinimumValue"), self.property("Value", "MaximumValue")

    def actions(self):
        return [name for name, _, _ in self.ask("Action", "GetActions")[0]]

    def act(self, name):
        return self.ask("Action", "DoAction", "(i)", self.actions().index(name))[0]

    def focus(self):
        return self.ask("Component", "GrabFocus")[0]

    def parent(self):
        return Node(self.bus, *self.property("Accessible", "Parent"))


class Accessibility:
    def __init__(self, session):
        """`session` is a connection to the session's message bus; the accessibility bus is started by asking."""
        address = call(session, "org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus", "GetAddress", patience=20000)[0]
        self.bus = connect(address)

        self.news = []
        for kind in ("object:state-changed:focused", "object:state-changed:selected", "focus:"):
            call(self.bus, ROOT[0], "/org/a11y/atspi/registry", ROOT[0], "RegisterEvent", "(s)", kind)
        for interface in ("Event.Object", "Event.Focus"):
            self.bus.signal_subscribe(None, INTERFACE + interface, None, None, None, Gio.DBusSignalFlags.NONE,
                                      lambda _, sender, path, *rest: self.news.append((sender, path)))

    def menu(self):
        """The menu that is open: an application does not count it among its windows, but reports where the keyboard
        is. None while no entry has it."""
        context = GLib.MainContext.default()
        while context.iteration(False):
            pass
        for sender, path in reversed(self.news[-40:]):
            node = Node(self.bus, sender, path)
            with contextlib.suppress(Refused):
                if node.ask("Accessible", "GetRoleName")[0] == "menu item":
                    seen = node.parent().look(2)
                    if "showing" in seen.states:
                        return seen
        return None

    def application(self, process):
        """The application of a process, or none while it has not come forward."""
        for node in Node(self.bus, *ROOT).children():
            with contextlib.suppress(Refused):
                owner = call(self.bus, "org.freedesktop.DBus", "/", "org.freedesktop.DBus",
                             "GetConnectionUnixProcessID", "(s)", node.name)[0]
                if owner == process:
                    return node
        return None
