#!/bin/bash
# Exports every kind of footage that tests/compatibility makes, measures what comes out, and writes the table
# into docs/COMPATIBILITY.md. Fails when an export is not as it should be; its row says so.
# Usage: scripts/compatibility.sh
set -euo pipefail
export LC_ALL=C.UTF-8
cd "$(dirname "${BASH_SOURCE[0]}")/.."

rows=$(mktemp)
trap 'rm -f "$rows"' EXIT

introduction() {
    cat <<TEXT
# Compatibility

What becomes of each kind of footage in an export. The table is written by \`scripts/compatibility.sh\`: it makes every
clip with FFmpeg, exports it with a scoreboard, decodes the result with FFmpeg's own tools and measures. Last made with
$(ffmpeg -version | head -n 1 | cut -d' ' -f1-3).

The clips are small (320 x 192) and about a second long. They show patches of known colour, one that flashes while a beep
sounds and one that tells the frames apart. H.264 and HEVC are encoded without loss here, so that what is measured is our
own work and not the encoder's; ProRes has no such mode. What these clips cannot show is what a particular camera gets
wrong. Real clips of several are part of the tests where they are at hand.

- **Frames**: how many, and how far their times are from the source's at most. Where the start is cut off,
  right within 1.3 ms: ranges are held in units of 1/600 s.
- **Sound**: by how much the beep is heard after the flash is seen; right within 10 ms.
- **Colours**: the largest difference from the source in any frame, in levels of 255; right within 2. HDR becomes SDR in
  H.264: there greys must stay grey and in order, black black and white white.
- **Overlay**: the same of the scoreboard and the logo against the colours they are drawn in; right within 3. In HDR its
  white stands at 203 cd/m².

Colour tags, display matrix and, for interlaced sources, the absence of combing are checked as well; a row that is not
right in everything says so.

| Source | Size | Format | Frames | Sound | Colours | Overlay | Result |
|---|---|---|---|---|---|---|---|
TEXT
}

scripts/build.sh release test_compatibility
status=0
QT_QPA_PLATFORM=offscreen POINTLOOM_COMPATIBILITY_ROWS=$rows \
    build/release/tests/test_compatibility --gtest_brief=1 || status=$?
{
    introduction
    cat "$rows"
} >docs/COMPATIBILITY.md
printf 'docs/COMPATIBILITY.md: %s rows\n' "$(wc -l <"$rows")"
exit "$status"
