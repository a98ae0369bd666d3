"""The diagrams: events on a line of time."""

from dataclasses import dataclass, field

FRAME = "-"


@dataclass(frozen=True)
class Event:
    """Something that happens in a frame: a value, "|" for the end or "#" for an error."""

    frame: int
    mark: str


@dataclass
class Diagram:
    """A line of frames with the marks of the events in them."""

    events: list[Event] = field(default_factory=list)

    def add(self, event: Event) -> None:
        """Adds an event. Of several in one frame the last is drawn."""
        self.events.append(event)

    def draw(self) -> str:
        marks = {event.frame: event.mark for event in self.events}
        return "".join(marks.get(frame, FRAME) for frame in range(max(marks, default=-1) + 1))


def parse(line: str) -> Diagram:
    """Reads what `Diagram.draw` has drawn."""
    return Diagram([Event(frame, mark) for frame, mark in enumerate(line) if mark != FRAME])
