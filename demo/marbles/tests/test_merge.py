from marbles.command import merge


def test_merges_frame_by_frame():
    assert merge(["a--c|", "-b"]) == "ab-c|"
