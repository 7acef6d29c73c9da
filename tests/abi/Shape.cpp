// SPDX-License-Identifier: MIT
#include "Shape.h"

// Programs do not see this.
struct Shape::Hidden
{
    int area = 0;
#ifdef MORE_HIDDEN_MEMBERS
    double angle = 0;
#endif
};

Shape::Shape() : m_hidden(new Hidden) {}

Shape::~Shape() = default;

int Shape::GetArea() const { return m_hidden->area; }

#ifdef MORE_VIRTUAL
int Shape::GetLength() const { return 0; }
#endif

#ifndef WITHOUT_FUNCTION
void Shape::SetArea(int area) { m_hidden->area = area; }
#endif

#ifdef OTHER_PARAMETER
void Shape::Scale(double factor)
#else
void Shape::Scale(int factor)
#endif
{
    m_hidden->area = static_cast<int>(m_hidden->area * factor);
}

#ifdef MORE_FUNCTIONS
void Shape::Rotate() {}
#endif
