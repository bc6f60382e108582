#!/bin/sh
exec /usr/bin/example.badpilot
