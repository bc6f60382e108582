#include <iostream>

int altitude(int minutes);

int main() {
    std::cout << altitude(7) << " m\n";
}
