#!/bin/sh
# Runs the example exchange as two processes over loopback TCP: starts the port, waits until it
# has published the port number it listens on, then runs the client against it. Exit status 0
# when both sides end well.
#   examples/tcp_demo.sh [FOLDER OF ehal_tcp_exchange [CLIENT COMMAND...]]
# The folder defaults to build/release/examples, the client to its "ehal_tcp_exchange client";
# the port number is added as the client's last argument.
set -u
bin=${1:-build/release/examples}
[ $# -gt 0 ] && shift
[ $# -eq 0 ] && set -- "$bin/ehal_tcp_exchange" client
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

"$bin/ehal_tcp_exchange" port "$work/port" &
port_pid=$!
tries=0
while [ ! -s "$work/port" ]; do
  tries=$((tries + 1))
  if [ "$tries" -gt 100 ] || ! kill -0 "$port_pid" 2>/dev/null; then
    echo "the port did not start" >&2
    kill "$port_pid" 2>/dev/null
    exit 1
  fi
  sleep 0.1
done

"$@" "$(cat "$work/port")"
client_status=$?
wait "$port_pid"
port_status=$?
[ "$client_status" -eq 0 ] && [ "$port_status" -eq 0 ]
