# A private CUPS server for tests with one cups-pdf printer: cups_start sets
# CUPS_SERVER (its socket), VEX_TEST_CUPS_PRINTER (the queue) and
# VEX_TEST_CUPS_OUT (where cups-pdf writes each job as a PDF); cups_stop
# removes it all. The server listens on a socket in its own folder only.
# cups-pdf runs as root and reads its settings from /etc/cups (one file for
# this queue, removed again); where that can't be, nothing is started and
# the tests of the printer path say so and skip.
CUPSD=${CUPSD:-/usr/sbin/cupsd}
CUPS_PDF_BACKEND=/usr/lib/cups/backend/cups-pdf
CUPS_PDF_PPD=/usr/share/ppd/cups-pdf/CUPS-PDF_opt.ppd

cups_start() {
  if [ "$(id -u)" -ne 0 ] || [ ! -x "$CUPSD" ] || [ ! -x "$CUPS_PDF_BACKEND" ] || [ ! -f "$CUPS_PDF_PPD" ] ||
     ! command -v lpadmin >/dev/null || ! getent group lp >/dev/null; then
    echo "cups-server: not started (needs root, cups, cups-client and printer-driver-cups-pdf);" \
         "the printer-path tests will skip"
    return 0
  fi
  CUPS_DIR=$(mktemp -d /tmp/vex-cups.XXXXXX)
  CUPS_QUEUE=VEX_PDF_$$
  mkdir -p "$CUPS_DIR"/{conf,spool,cache,state,log,tmp,out}
  cat >"$CUPS_DIR/conf/cupsd.conf" <<EOF
Listen $CUPS_DIR/cups.sock
LogLevel warn
WebInterface No
Browsing No
DefaultAuthType None
<Location />
  Order allow,deny
  Allow all
</Location>
<Policy default>
  <Limit All>
    Order deny,allow
  </Limit>
</Policy>
EOF
  cat >"$CUPS_DIR/conf/cups-files.conf" <<EOF
ServerRoot $CUPS_DIR/conf
RequestRoot $CUPS_DIR/spool
CacheDir $CUPS_DIR/cache
StateDir $CUPS_DIR/state
TempDir $CUPS_DIR/tmp
ErrorLog $CUPS_DIR/log/error_log
AccessLog $CUPS_DIR/log/access_log
PageLog $CUPS_DIR/log/page_log
ServerBin /usr/lib/cups
DataDir /usr/share/cups
User lp
Group lp
SystemGroup root
EOF
  chown -R root:lp "$CUPS_DIR"
  chmod -R g+rwX "$CUPS_DIR"
  chmod 755 "$CUPS_DIR"
  "$CUPSD" -f -c "$CUPS_DIR/conf/cupsd.conf" -s "$CUPS_DIR/conf/cups-files.conf" &
  CUPS_PID=$!
  for _ in $(seq 50); do
    [ -S "$CUPS_DIR/cups.sock" ] && break
    sleep 0.2
  done
  if [ ! -S "$CUPS_DIR/cups.sock" ]; then
    echo "cups-server: cupsd did not start; the printer-path tests will skip" >&2
    cups_stop
    return 0
  fi
  export CUPS_SERVER="$CUPS_DIR/cups.sock"
  printf 'Out %s\nAnonDirName %s\nLabel 0\nLog %s\n' "$CUPS_DIR/out" "$CUPS_DIR/out" "$CUPS_DIR/log" \
    >"/etc/cups/cups-pdf-$CUPS_QUEUE.conf"
  # The job reaches cups-pdf as PostScript. Rendered by cairo the Korean
  # faces stay text with their characters (the default renderer makes
  # glyph pictures of them), so that a test can read the PDF back.
  if ! lpadmin -p "$CUPS_QUEUE" -v "cups-pdf:/$CUPS_QUEUE" -P "$CUPS_PDF_PPD" -E \
       -o pdftops-renderer-default=pdftocairo 2>"$CUPS_DIR/log/lpadmin"; then
    echo "cups-server: the cups-pdf queue could not be made; the printer-path tests will skip" >&2
    cups_stop
    return 0
  fi
  export VEX_TEST_CUPS_PRINTER="$CUPS_QUEUE" VEX_TEST_CUPS_OUT="$CUPS_DIR/out"
  echo "cups-server: $CUPS_QUEUE on $CUPS_SERVER, PDFs into $VEX_TEST_CUPS_OUT"
}

cups_stop() {
  [ -n "${CUPS_DIR:-}" ] || return 0
  if [ -n "${CUPS_PID:-}" ]; then
    kill "$CUPS_PID" 2>/dev/null || true
    wait "$CUPS_PID" 2>/dev/null || true
  fi
  rm -f "/etc/cups/cups-pdf-$CUPS_QUEUE.conf"
  rm -rf "$CUPS_DIR"
  unset CUPS_SERVER VEX_TEST_CUPS_PRINTER VEX_TEST_CUPS_OUT
  CUPS_DIR= CUPS_PID=
}
