"""Drives the program through the accessibility bus, as a screen reader does."""

import re
import warnings

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402

from . import accessibility_bus as bus  # noqa: E402
from .waiting import DEADLINE, Overdue, wait_for  # noqa: E402

warnings.filterwarnings("ignore", category=DeprecationWarning)

APPLICATION = "Zentrill"
_STATES = [(number, Atspi.StateType(number).value_nick) for number in range(Atspi.StateType.LAST_DEFINED)]


class Element:
    """One thing on the screen. Every property but the role is asked for anew; GLib.Error means that it is gone."""

    # What never holds anything: whoever looks for something need not ask.
    leaves = frozenset(["animation", "heading", "page tab", "push button", "scroll bar"])
    _roles = {}

    def __init__(self, target):
        """`target` is a name and a path on the accessibility bus."""
        self.target = target

    @property
    def role(self):
        """That of a path does not change, and no path is given out twice."""
        if self.target not in self._roles:
            self._roles[self.target] = Atspi.role_get_name(Atspi.Role(self._ask("Accessible", "GetRole")))
        return self._roles[self.target]

    @property
    def name(self):
        return bus.read(self.target, "atspi.Accessible", "Name")

    @property
    def description(self):
        return bus.read(self.target, "atspi.Accessible", "Description")

    @property
    def states(self):
        bits = self._ask("Accessible", "GetState")
        return {nick for number, nick in _STATES if bits[number // 32] >> number % 32 & 1}

    @property
    def extents(self):
        """x, y, width and height on the screen."""
        return self._ask("Component", "GetExtents", "u", Atspi.CoordType.SCREEN)

    @property
    def middle(self):
        x, y, width, height = self.extents
        return x + width // 2, y + height // 2

    @property
    def text(self):
        """What is written in a field."""
        return self._ask("Text", "GetText", "ii", 0, -1)

    @property
    def actions(self):
        if not self._offers("Action"):
            return []
        return [self._ask("Action", "GetName", "i", index)
                for index in range(bus.read(self.target, "atspi.Action", "NActions"))]

    def act(self, action):
        """Whether the program says that it did it; only the outcome tells whether it did."""
        return self._ask("Action", "DoAction", "i", self.actions.index(action))

    def press(self):
        return self.act("Press")

    def press_to_end(self):
        """Presses what may end the program, which can be gone before its answer is on the way."""
        try:
            self.press()
        except GLib.Error as error:
            if "without replying" not in error.message:
                raise

    def grab_focus(self):
        return self._offers("Component") and self._ask("Component", "GrabFocus")

    def set_text(self, text):
        """What an assistive tool tries that writes into a field. False where the field takes none."""
        return self._offers("EditableText") and self._ask("EditableText", "SetTextContents", "s", text)

    def children(self):
        return [Element(child) for child in bus.children(self.target)]

    def walk(self):
        """This and everything below it, in reading order."""
        yield self
        if self.role not in self.leaves:
            for child in self.children():
                yield from child.walk()

    def _offers(self, interface):
        return f"org.a11y.atspi.{interface}" in self._ask("Accessible", "GetInterfaces")

    def _ask(self, interface, method, signature="", *arguments):
        return bus.call(self.target, f"atspi.{interface}", method, signature, *arguments)

    def __str__(self):
        return f"{self.role} {self.name!r} {self.description!r} {sorted(self.states)}"


def _is(wanted, text):
    return wanted.search(text) is not None if isinstance(wanted, re.Pattern) else wanted == text


def _fits(element, states, **texts):
    """Asks for nothing that is not wanted: every answer has to come from the program."""
    return (all(wanted is None or _is(wanted, getattr(element, text)) for text, wanted in texts.items())
            and states <= element.states)


class ScreenReader:
    def __init__(self):
        Atspi.init()
        self._listeners = []

    def application(self):
        """The program, or nothing while it is not on the bus."""
        return next((child for child in map(Element, bus.applications()) if child.name == APPLICATION), None)

    def find_all(self, role=None, name=None, **wanted):
        """Everything that is shown and fits: texts are equal, or a compiled pattern is found in them."""
        try:
            return list(self._matching(role, name, **wanted))
        except GLib.Error:
            return []  # The tree changed under the walk; who waits looks again.

    def find(self, role=None, name=None, **wanted):
        """The first of them, without a look at what comes after it."""
        try:
            return next(self._matching(role, name, **wanted), None)
        except GLib.Error:
            return None

    def _matching(self, role, name, description=None, states=(), showing=True):
        wanted = set(states) | ({"showing"} if showing else set())
        application = self.application()
        for element in application.walk() if application else ():
            if _fits(element, wanted, role=role, name=name, description=description):
                yield element

    def wait(self, role=None, name=None, seconds=DEADLINE, **wanted):
        """The first that fits, as soon as there is one."""
        return self.until(lambda: self.find(role, name, **wanted), f"{role} {name!r} {wanted}", seconds)

    def wait_gone(self, role=None, name=None, seconds=DEADLINE, **wanted):
        self.until(lambda: self.find(role, name, **wanted) is None, f"no {role} {name!r} {wanted}", seconds)

    def until(self, condition, what, seconds=DEADLINE):
        """Waits; a failure shows everything that the bus shows."""

        def tried():
            try:
                return condition()
            except GLib.Error:
                return None

        try:
            return wait_for(tried, what, seconds)
        except Overdue as overdue:
            raise Overdue(f"{overdue}\n{self.describe()}") from None

    def focused(self):
        """The innermost thing that has the focus."""
        found = self.find_all(states=["focused"])
        return found[-1] if found else None

    def listen(self, *kinds):
        """Hears the program's events of these kinds from now on. Returns a function that tells all that came so far,
        each as its kind, and role and name of what it is about."""
        heard = []

        def note(event):
            try:
                if event.source.get_application().get_name() == APPLICATION:
                    heard.append((event.type, event.source.get_role_name(), event.source.get_name()))
            except GLib.Error:
                pass  # It is gone already.

        listener = Atspi.EventListener.new(note)
        for kind in kinds:
            listener.register(kind)
        self._listeners.append(listener)

        def so_far():
            context = GLib.MainContext.default()
            while context.iteration(False):
                pass
            return heard

        return so_far

    def describe(self):
        """Everything on the bus, one line each."""
        lines = []

        def add(element, depth):
            lines.append("  " * depth + str(element))
            for child in element.children():
                add(child, depth + 1)

        try:
            application = self.application()
            if application is None:
                return "The program is not on the accessibility bus."
            add(application, 0)
        except GLib.Error as gone:
            lines.append(f"… {gone.message}")
        return "\n".join(lines)
