"""Finds widgets on the screen by what they tell assistive technology: role, name, place."""

from processes import TourError, wait_for


class Widgets:
    """All windows of one program. Needs the desktop's environment in that of this process."""

    def __init__(self, desktop, pid):
        import gi  # pylint: disable=import-outside-toplevel
        gi.require_version("Atspi", "2.0")
        from gi.repository import Atspi  # pylint: disable=import-outside-toplevel
        self.atspi = Atspi
        self.desktop = desktop
        self.pid = pid

    def _roots(self):
        everything = self.atspi.get_desktop(0)
        everything.clear_cache()
        for i in range(everything.get_child_count()):
            program = everything.get_child_at_index(i)
            if program and program.get_process_id() == self.pid:
                yield from self._children(program)

    @staticmethod
    def _children(node):
        for i in range(node.get_child_count()):
            child = node.get_child_at_index(i)
            if child:
                yield child

    def _is_showing(self, node):
        return node.get_state_set().contains(self.atspi.StateType.SHOWING)

    def _walk(self, node):
        try:
            node.clear_cache()
            if not self._is_showing(node):
                return
            yield node
            # The entries of a list are many, and are reached by keys.
            if node.get_role_name() not in ("list", "combo box"):
                for child in self._children(node):
                    yield from self._walk(child)
        except self.atspi_error():
            return

    @staticmethod
    def atspi_error():
        from gi.repository import GLib  # pylint: disable=import-outside-toplevel
        return GLib.Error

    def all(self, name=None, roles=None):
        """Shown widgets with this name (or one of these) and one of these roles, in the order of
        the windows."""
        found = []
        names = (name,) if isinstance(name, str) else name
        for root in self._roots():
            for node in self._walk(root):
                if names is not None and node.get_name() not in names:
                    continue
                if roles is None or node.get_role_name() in roles:
                    found.append(node)
        return found

    def below(self, node):
        """The shown widgets inside of another."""
        return list(self._walk(node))[1:]

    def has(self, name, roles=None):
        return bool(self.all(name, roles))

    def says(self, beginning):
        """True when a shown text begins so."""
        return any(node.get_name().startswith(beginning) for node in self.all())

    def find(self, name=None, roles=None, seconds=20):
        what = f"a widget {name!r}" + (f" ({', '.join(roles)})" if roles else "")
        return wait_for(lambda: self.all(name, roles), what, seconds)[0]

    def rectangle(self, node):
        """In pixels of the screen; what the toolkit tells is in units of length."""
        area = node.get_extents(self.atspi.CoordType.SCREEN)
        return tuple(side * self.desktop.scale
                     for side in (area.x, area.y, area.width, area.height))

    def centre(self, node):
        x, y, width, height = self.rectangle(node)
        return x + width // 2, y + height // 2

    def is_checked(self, node):
        node.clear_cache()
        return node.get_state_set().contains(self.atspi.StateType.CHECKED)

    BUTTONS = ("push button", "toggle button", "check box", "radio button", "page tab")

    def click(self, name, count=1):
        """Clicks the button of this name with the mouse."""
        node = self.find(name, self.BUTTONS)
        if not node.get_state_set().contains(self.atspi.StateType.ENABLED):
            raise TourError(f"the button {name!r} is disabled")
        self.desktop.click(self.centre(node), count=count)

    def box(self, group):
        """The selection box in the group of this title. A box's own name is its current text."""
        boxes = [node for node in self.below(self.find(group, ("panel",)))
                 if node.get_role_name() == "combo box"]
        if not boxes:
            raise TourError(f"there is no box in the group {group!r}")
        return boxes[0]

    def choose(self, group, entry):
        """Opens the box of a group with the mouse and picks an entry (text or number) by keys."""
        node = self.box(group)
        entries = self.entries(node)
        index = entry if isinstance(entry, int) else entries.index(entry)
        self.desktop.click(self.centre(node))
        self.desktop.press("Home", *["Down"] * index, "Return")
        wait_for(lambda: self.fresh_name(node) == entries[index], f"{entries[index]} chosen")

    @staticmethod
    def fresh_name(node):
        node.clear_cache()
        return node.get_name()

    def entries(self, node):
        """Texts in a box or list."""
        texts = []
        for child in self._children(node):
            child.clear_cache()
            if child.get_role_name() == "list":
                texts += [entry.get_name() for entry in self._children(child)]
            else:
                texts.append(child.get_name())
        return texts

    def drag_entry(self, name, row, target):
        """Drags an entry of the list of this name below another one."""
        entries = list(self._children(self.find(name, ("list",))))
        x, y, _, height = self.rectangle(entries[target])
        self.desktop.drag(self.centre(entries[row]), (x + 20, y + height - 3))

    def fill(self, name, text):
        """Writes into the text field of this name."""
        self.desktop.click(self.centre(self.find(name, ("text", "password text"))), count=3)
        self.desktop.press("ctrl+a", "Delete")
        self.desktop.type(text)
