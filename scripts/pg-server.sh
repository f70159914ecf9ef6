# A private PostgreSQL cluster for tests: pg_start sets PG_URI, pg_stop
# removes it. The server listens on 127.0.0.1 only, with trust for local
# connections, and runs as the postgres user when started by root.
PG_BIN=$(ls -d /usr/lib/postgresql/*/bin 2>/dev/null | sort -V | tail -n 1)
PG_PORT=${VEX_PG_PORT:-54329}

pg_as() {
  if [ "$(id -u)" -eq 0 ]; then runuser -u postgres -- "$@"; else "$@"; fi
}

pg_start() {
  PG_DIR=$(mktemp -d /tmp/vex-pg.XXXXXX)
  [ "$(id -u)" -eq 0 ] && chown postgres:postgres "$PG_DIR"
  pg_as "$PG_BIN/initdb" -D "$PG_DIR/data" -U postgres -A trust -E UTF8 --no-locale >"$PG_DIR/initdb.log" 2>&1
  pg_as "$PG_BIN/pg_ctl" -D "$PG_DIR/data" -l "$PG_DIR/server.log" -w \
    -o "-c listen_addresses=127.0.0.1 -p $PG_PORT -k $PG_DIR -c fsync=off" start >/dev/null
  pg_as "$PG_BIN/createdb" -h 127.0.0.1 -p "$PG_PORT" -U postgres vextest
  PG_URI="postgresql://postgres@127.0.0.1:$PG_PORT/vextest"
  echo "pg-server: $PG_URI"
}

pg_stop() {
  [ -n "${PG_DIR:-}" ] || return 0
  pg_as "$PG_BIN/pg_ctl" -D "$PG_DIR/data" -m immediate stop >/dev/null 2>&1 || true
  rm -rf "$PG_DIR"
  PG_DIR=
}
