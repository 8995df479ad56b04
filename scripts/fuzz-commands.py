#!/usr/bin/env python3
"""Feeds the engine random and mutated command lines and reports any crash, hang or sanitizer
report. Usage: scripts/fuzz-commands.py ENGINE [runs, default 200] [seed]"""
import os
import random
import subprocess
import sys

COMMANDS = ["quit", "xboard", "protover", "new", "force", "ping", "usermove", "go", "playother", "setboard",
            "level", "sd", "time", "undo", "remove", "analyze", "exit", "auto", "post", "nopost", "cores",
            "egtpath", "option", "book", "nobook", "perft", "divide", "eval", "tune", "randpos",
            "randgame", "norandgame", "randgames", "otim", "hint", "result", "e2e4", ""]
FENS = ["rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1",
        "r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1",
        "8/8/8/8/8/8/8/8 w - - 0 1", "4k3/8/8/8/8/8/8/4K3 w - - 0 1", "7k/5Q2/6K1/8/8/8/8/8 b - - 0 1",
        "k7/8/1K6/8/8/8/8/7R w - - 99 80", "8/P7/8/8/8/8/p7/K6k w - - 0 1"]
MOVES = ["e2e4", "e7e5", "g1f3", "b8c6", "e1g1", "a7a8q", "E2E4", "e2e4q", "a1a1", "h7h8n", "xx", "e2"]
ARGS = ["0", "1", "-1", "2", "3", "x", "", "99999999999", "40", "5", "0:30", "1:2:3", "ttHashSizeMB=1",
        "pawnHashSizeMB=2", "gtbCacheSizeMB=0", "gtbPath=/nonexistent", "bookFilePath=/nonexistent", "nosuch=1",
        "ttHashSizeMB", "gaviota", "/tmp"]


def random_line(rng):
    kind = rng.random()
    if kind < 0.1:
        return "".join(chr(rng.randrange(1, 256)) for _ in range(rng.randrange(0, 40)))
    if kind < 0.15:
        return rng.choice(COMMANDS) + " " + "x" * rng.randrange(1000, 3000)
    command = rng.choice(COMMANDS)
    if command == "setboard":
        fen = rng.choice(FENS)
        if rng.random() < 0.5:
            fen = "".join(c if rng.random() > 0.05 else rng.choice("/ 12345678pPkKqQ-w") for c in fen)
        return "setboard " + fen
    if command == "usermove":
        return "usermove " + rng.choice(MOVES)
    if command in ("perft", "divide"):
        return command + " " + rng.choice(["0", "1", "2", "3", "x", "-1"])
    if command == "randgames":
        return "randgames " + rng.choice(["1", "5", "0", "x"])
    args = " ".join(rng.choice(ARGS) for _ in range(rng.randrange(0, 4)))
    line = (command + " " + args) if args else command
    return line + rng.choice(["", "", " ", "\r", "\t", "  "])


def main():
    engine = os.path.abspath(sys.argv[1])
    runs = int(sys.argv[2]) if len(sys.argv) > 2 else 200
    rng = random.Random(int(sys.argv[3]) if len(sys.argv) > 3 else 1)
    failures = 0
    for run in range(runs):
        lines = ["level 40 0:5 0", "sd 3"] + [random_line(rng) for _ in range(rng.randrange(10, 60))]
        text = "\n".join(lines) + "\n"
        data = text.encode("latin-1", errors="replace")
        try:
            result = subprocess.run([engine], input=data, capture_output=True, timeout=120, cwd="/tmp")
        except subprocess.TimeoutExpired:
            failures += 1
            print(f"run {run}: hang\n{text}")
            continue
        report = result.stderr.decode("latin-1")
        if result.returncode != 0 or "Sanitizer" in report or "runtime error" in report:
            failures += 1
            print(f"run {run}: exit {result.returncode}\n{report[-3000:]}\n--- input\n{text}")
    print(f"{runs} runs, {failures} failures")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
