"""The command: merges diagrams, one a line."""

import sys

from marbles.diagram import Diagram, parse


def merge(lines: list[str]) -> str:
    merged = Diagram()
    for line in lines:
        for event in parse(line).events:
            merged.add(event)
    return merged.draw()


def main() -> None:
    print(merge(sys.stdin.read().splitlines()))


if __name__ == "__main__":
    main()
