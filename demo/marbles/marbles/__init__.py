"""Draws what an observable emits as a line of text."""

from marbles.diagram import Diagram, Event

__all__ = ["Diagram", "Event"]
