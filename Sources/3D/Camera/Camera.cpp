#include "3D/Camera/Camera.h"

#include <iostream>

Camera::Camera(Vector3f position, Vector3f direction, Vector3f up)
    : position(position), direction(direction), up(up) {}

Vector3f Camera::getPosition() const { return position; }

Vector3f Camera::getDirection() const { return direction; }

Vector3f Camera::getUp() const { return up; }

void Camera::display() const {
    std::cout << "Position: " << position << std::endl;
    std::cout << "Direction: " << direction << std::endl;
    std::cout << "Up: " << up << std::endl;
}
