#!/usr/bin/env bash
# From the start of the program to the first light and to a window that stands: start.sh PROGRAMS [TIMES]. The reader
# looks at the screen for the first time right behind the first light. Beside it an empty Qt program, until it waits for events.
set -euo pipefail
bin=$(cd "$1" && pwd) times=${2:-20}
folder=$(mktemp -d)
trap 'kill "$server" || true; wait; rm -rf "$folder"' EXIT
Xvfb -displayfd 3 -screen 0 1920x1080x24 -noreset -nolisten tcp 3>"$folder/display" 2>/dev/null &
server=$!
while [ ! -s "$folder/display" ]; do sleep 0.1; done
DISPLAY=:$(cat "$folder/display")
export DISPLAY XDG_RUNTIME_DIR=$folder HOME=$folder DBUS_SESSION_BUS_ADDRESS=
chmod 700 "$folder"
python3 - "$bin" "$folder" "$times" <<'END'
import json, os, statistics, subprocess, sys, time

programs, folder, times = sys.argv[1], sys.argv[2], int(sys.argv[3])


def waits(process):
    """Whether all that the process does is to wait for its sockets."""
    with open(f"/proc/{process}/wchan") as file:
        return "poll" in file.read()


def start_of(command, is_there):
    begin = time.monotonic()
    process = subprocess.Popen(command)
    while not is_there(process.pid):
        time.sleep(0.0005)
    end = time.monotonic()
    process.terminate()
    process.wait()
    return begin, end


def calls(trace):
    with open(trace) as file:
        return [json.loads(line) for line in file if line.endswith("}\n")]


def show(name, seconds):
    seconds = sorted(seconds)
    print(f"{name:40} median {1000 * statistics.median(seconds):5.0f} ms, {1000 * seconds[0]:.0f} to {1000 * seconds[-1]:.0f}")


trace = folder + "/trace"
command = [programs + "/glimra", "--keyboard", "virtual", "--settings", folder + "/settings.ini", "--trace", trace]
lights, windows, empty = [], [], []
for _ in range(times):
    if os.path.exists(trace):
        os.remove(trace)
    begin, _ = start_of(command, lambda _: os.path.exists(trace) and '"mainWindow"' in open(trace).read())
    told = calls(trace)
    lights.append(next(line["t"] for line in told if line.get("call") == "LogiLedInit") - begin)
    windows.append(next(line["t"] for line in told if line.get("window") == "mainWindow") - begin)
    begin, end = start_of([programs + "/idle_reference"], waits)
    empty.append(end - begin)
show("empty Qt program, until it waits", empty)
show("glimra, first call of the keyboard", lights)
show("glimra, its window is shown", windows)
END
