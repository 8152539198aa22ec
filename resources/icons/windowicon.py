#!/usr/bin/env python3
"""Makes pixels of drawings that are compiled in: the window icon, as window managers take it, and the
symbols of message boxes.

    windowicon.py --src NAME=window.svg [NAME=...] --sizes 16,32,48 --out windowicon.h

The header defines each NAME: for each size width, height and the pixels row by row, each 0xAARRGGBB.
"""

import argparse
import subprocess
import sys

A_LINE = 8  # pixels


def plane(png, magic, *options):
    """The samples of the picture's colours or of its opacity."""
    pnm = subprocess.run(['pngtopnm', *options], input=png, stdout=subprocess.PIPE,
                         check=True).stdout
    found, _, depth, samples = pnm.split(b'\n', 3)
    if found != magic or depth != b'255':
        raise ValueError('the renderer gave an unexpected picture')
    return samples


def pixels(drawing, size):
    png = subprocess.run(['rsvg-convert', '-w', str(size), '-h', str(size), drawing],
                         stdout=subprocess.PIPE, check=True).stdout
    colours, opacity = plane(png, b'P6'), plane(png, b'P5', '-alpha')
    if len(opacity) != size * size or len(colours) != 3 * size * size:
        raise ValueError(f'the renderer gave no picture of {size} pixels')
    return [alpha << 24 | int.from_bytes(colours[3 * at:3 * at + 3], 'big')
            for at, alpha in enumerate(opacity)]


def main():
    arguments = argparse.ArgumentParser(description=__doc__.split('\n', maxsplit=1)[0])
    arguments.add_argument('--src', required=True, nargs='+')
    arguments.add_argument('--sizes', required=True)
    arguments.add_argument('--out', required=True)
    options = arguments.parse_args()
    out = ['/* Made from drawings by windowicon.py. */']
    try:
        for name, drawing in (source.split('=', 1) for source in options.src):
            out.append(f'inline constexpr unsigned long {name}[] = {{')
            for size in map(int, options.sizes.split(',')):
                picture = pixels(drawing, size)
                out.append(f'    {size}, {size},')
                out += ['    ' + ' '.join(f'0x{pixel:08x},' for pixel in picture[at:at + A_LINE])
                        for at in range(0, len(picture), A_LINE)]
            out.append('};')
        with open(options.out, 'w', encoding='ascii') as header:
            header.write('\n'.join(out + ['']))
    except (ValueError, OSError, subprocess.CalledProcessError) as fault:
        print(f'{sys.argv[0]}: {fault}', file=sys.stderr)
        return 1
    return 0


if __name__ == '__main__':
    sys.exit(main())
