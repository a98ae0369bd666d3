; What is declared.
(field_definition property: (_) @name) @attribute

; What a field holds.
(field_definition value: (_) @value) @of
(field_definition value: (arrow_function body: (_) @body)) @of

; What is public: the modules of CommonJS.
(call_expression function: (identifier) @module (#eq? @module "require"))
(assignment_expression
  left: (member_expression object: (identifier) @module property: (property_identifier) @exports)
  right: (identifier) @export
  (#eq? @module "module") (#eq? @exports "exports"))
(assignment_expression
  left: (member_expression object: (identifier) @module property: (property_identifier) @exports)
  right: (object [
    (shorthand_property_identifier) @export
    (pair value: (identifier) @export)
  ])
  (#eq? @module "module") (#eq? @exports "exports"))
(assignment_expression
  left: (member_expression object: (identifier) @module property: (property_identifier) @export)
  (#eq? @module "exports"))
(assignment_expression
  left: (member_expression object: (identifier) @module)
  right: (identifier) @export
  (#eq? @module "exports"))
(assignment_expression
  left: (member_expression
    object: (member_expression object: (identifier) @module property: (property_identifier) @exports)
    property: (property_identifier) @export)
  (#eq? @module "module") (#eq? @exports "exports"))
(assignment_expression
  left: (member_expression
    object: (member_expression object: (identifier) @module property: (property_identifier) @exports))
  right: (identifier) @export
  (#eq? @module "module") (#eq? @exports "exports"))
