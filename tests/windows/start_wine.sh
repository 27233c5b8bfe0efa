#!/bin/sh
# Starts a Wine server that stays, with an up-to-date prefix. Its output would keep a pipe open.
wineserver -p >/dev/null 2>&1
exec wineboot -u >/dev/null 2>&1
