#!/usr/bin/env python3
"""Compiles a description, once no line of it can hang the compiler.

    compile.py UIL [ARGUMENT...] MODULE.uil

Reads every description of the module's folder and of those given with -I, and starts the compiler
with the arguments as they are when all their lines are short enough.
"""

import pathlib
import subprocess
import sys

LONGEST = 130  # bytes; a longer line is cut, or read for ever


def long_lines(folders):
    for file in sorted(file for folder in folders for file in folder.glob('*.ui[lh]')):
        for number, line in enumerate(file.read_bytes().splitlines(), 1):
            if len(line) > LONGEST:
                yield f'{file}:{number}: {len(line)} bytes in a line; the most is {LONGEST}'


def main(arguments):
    folders = {pathlib.Path(arguments[-1]).parent}
    folders.update(pathlib.Path(argument[2:]) for argument in arguments
                   if argument.startswith('-I'))
    faults = list(long_lines(folders))
    print('\n'.join(faults), file=sys.stderr, end='\n' if faults else '')
    return 1 if faults else subprocess.call(arguments)


if __name__ == '__main__':
    sys.exit(main(sys.argv[1:]))
