"""What a produced file is, as programs of other makers see it."""

import dataclasses
import json
import re

from processes import TourError, output_of, wait_for


@dataclasses.dataclass
class FileReport:
    """One file of the result table."""
    path: object
    kind: str
    detail: str


def _wait_whole(path, seconds):
    """Files appear whole, so existing is enough; an empty one never counts."""
    wait_for(lambda: path.is_file() and path.stat().st_size > 0, f"the file {path.name}", seconds)


def check_image(path, kind, size=None, gray=False, seconds=30):
    """`kind` as ImageMagick names it; `size` (width, height), or a function that judges it."""
    _wait_whole(path, seconds)
    text = output_of("identify", "-quiet", "-format",
                     "%m %w %h %[fx:standard_deviation] %[fx:saturation]\n", f"{path}[0]")
    found, width, height, deviation, _ = text.split()
    actual = int(width), int(height)
    if found != kind:
        raise TourError(f"{path.name} is {found} instead of {kind}")
    if size is not None and not (size(*actual) if callable(size) else actual == size):
        raise TourError(f"{path.name} has {actual[0]} x {actual[1]} pixels instead of {size}")
    if float(deviation) < 0.01:
        raise TourError(f"{path.name} shows nothing")
    if gray and output_of("identify", "-format", "%[colorspace]", str(path)) != "Gray":
        colours = output_of("convert", str(path), "-resize", "200x", "-colorspace", "HSL",
                            "-channel", "G", "-separate", "-format", "%[fx:maxima]", "info:")
        if float(colours) > 0.05:
            raise TourError(f"{path.name} is not gray")
    return FileReport(path, kind, f"{actual[0]} x {actual[1]}")


def check_pdf(path, pages=1, seconds=30):
    _wait_whole(path, seconds)
    output_of("qpdf", "--check", str(path))
    info = dict(re.findall(r"^([^:]+):\s*(.*)$", output_of("pdfinfo", str(path)), re.M))
    if int(info["Pages"]) != pages:
        raise TourError(f"{path.name} has {info['Pages']} pages instead of {pages}")
    return FileReport(path, "PDF", f"{pages} page{'s' if pages > 1 else ''}, {info['Page size']}")


def check_video(path, size, seconds_long, sound=False, seconds=30):
    """`seconds_long`: least and most duration."""
    _wait_whole(path, seconds)
    data = json.loads(output_of(
        "ffprobe", "-v", "error", "-count_frames", "-show_streams", "-show_format",
        "-of", "json", str(path), seconds=180))
    streams = {stream["codec_type"]: stream for stream in data["streams"]}
    video, duration = streams.get("video"), float(data["format"]["duration"])
    if not video or (video["width"], video["height"]) != size:
        raise TourError(f"{path.name} has no picture of {size}")
    if not seconds_long[0] <= duration <= seconds_long[1]:
        raise TourError(f"{path.name} lasts {duration:.1f} s instead of {seconds_long}")
    if sound and "audio" not in streams:
        raise TourError(f"{path.name} has no sound")
    frames = int(video["nb_read_frames"])
    names, suffix = data["format"]["format_name"].split(","), path.suffix[1:]
    if suffix not in names:
        raise TourError(f"{path.name} is {names[0]} inside")
    return FileReport(path, suffix.upper(),
                      f"{size[0]} x {size[1]}, {duration:.1f} s, {frames} frames"
                      + (", sound" if "audio" in streams else ""))
