int altitude(int minutes) {
    return 10000 - 500 * minutes;
}
