; What is declared.
(class_specifier name: [(type_identifier) (template_type)] @name body: (_) @body) @class
(class_specifier name: (qualified_identifier name: (type_identifier) @name) body: (_) @body) @class
(struct_specifier name: (template_type) @name body: (_) @body) @struct
(struct_specifier name: (qualified_identifier name: (type_identifier) @name) body: (_) @body) @struct
(enum_specifier name: (qualified_identifier name: (type_identifier) @name) body: (_) @body) @enum
(function_definition declarator: (reference_declarator (function_declarator declarator: (identifier) @name)) body: (_) @body) @function
(function_definition
  declarator: [
    (function_declarator declarator: [(field_identifier) (destructor_name) (operator_name)] @name)
    (pointer_declarator declarator: [
      (function_declarator declarator: [(field_identifier) (operator_name)] @name)
      (pointer_declarator declarator: (function_declarator declarator: (field_identifier) @name))
    ])
    (reference_declarator (function_declarator declarator: [(field_identifier) (operator_name)] @name))
  ]) @function
(function_definition
  declarator: [
    (function_declarator declarator: (qualified_identifier name: [
      (identifier) @name (destructor_name) @name (operator_name) @name
      (qualified_identifier name: [(identifier) (destructor_name) (operator_name)] @name)
    ]))
    (pointer_declarator declarator: (function_declarator declarator: (qualified_identifier name: [
      (identifier) @name
      (qualified_identifier name: (identifier) @name)
    ])))
    (reference_declarator (function_declarator declarator: (qualified_identifier name: [
      (identifier) @name (operator_name) @name
      (qualified_identifier name: [(identifier) (operator_name)] @name)
    ])))
  ]) @declaration
(declaration
  declarator: [
    (function_declarator declarator: [(operator_name) (destructor_name)] @name)
    (reference_declarator (function_declarator declarator: (identifier) @name))
  ]) @function
(declaration
  declarator: [
    (reference_declarator (identifier) @name)
    (init_declarator declarator: (reference_declarator (identifier) @name) value: (_) @value)
  ]) @binding @variable
(field_declaration
  declarator: [
    (function_declarator declarator: [(field_identifier) (operator_name)] @name)
    (pointer_declarator declarator: [
      (function_declarator declarator: (field_identifier) @name)
      (pointer_declarator declarator: (function_declarator declarator: (field_identifier) @name))
    ])
    (reference_declarator (function_declarator declarator: [(field_identifier) (operator_name)] @name))
  ]) @method
(field_declaration declarator: (reference_declarator (field_identifier) @name)) @attribute
(alias_declaration name: (_) @name) @type
(concept_definition name: (_) @name) @interface

; What is a member of a class: what stands in it, and what is named by it. Any other name before :: may be a namespace.
(field_declaration_list (function_definition) @method)
(field_declaration_list [
  (template_declaration (function_definition) @method)
  (preproc_ifdef (function_definition) @method)
  (preproc_if (function_definition) @method)
])
(function_definition
  declarator: [
    (function_declarator declarator: (qualified_identifier scope: (template_type)))
    (pointer_declarator declarator: (function_declarator declarator: (qualified_identifier scope: (template_type))))
    (reference_declarator (function_declarator declarator: (qualified_identifier scope: (template_type))))
    (function_declarator declarator: (qualified_identifier name: [
      (destructor_name)
      (qualified_identifier name: (destructor_name))
    ]))
  ]) @method
(declaration declarator: (function_declarator declarator: (destructor_name))) @method
(field_declaration_list [
  (declaration !type declarator: (function_declarator declarator: (identifier)))
  (function_definition !type declarator: (function_declarator declarator: (identifier)))
] @constructor)
(field_declaration_list (_ [
  (declaration !type declarator: (function_declarator declarator: (identifier)))
  (function_definition !type declarator: (function_declarator declarator: (identifier)))
] @constructor))
(function_definition
  declarator: (function_declarator declarator: (qualified_identifier
    scope: [(namespace_identifier) @class_name (template_type name: (_) @class_name)]
    name: (identifier) @own_name))
  (#eq? @class_name @own_name)) @constructor
(function_definition
  declarator: (function_declarator declarator: (qualified_identifier name: (qualified_identifier
    scope: [(namespace_identifier) @class_name (template_type name: (_) @class_name)]
    name: (identifier) @own_name)))
  (#eq? @class_name @own_name)) @constructor

; What belongs to the declaration in it.
(template_declaration) @wrapper

; Bodies that are declared above without them.
(function_definition body: (_) @body) @of
(function_definition (field_initializer_list) @body) @of

; What a variable holds, and which of them stay.
(declaration (type_qualifier) @qualifier declarator: (init_declarator declarator: (reference_declarator)) (#eq? @qualifier "const")) @constant
(declaration (type_qualifier) @qualifier declarator: [(identifier) (init_declarator)] (#eq? @qualifier "constexpr")) @constant
(declaration declarator: (init_declarator value: (lambda_expression body: (_) @body))) @function

; What is hidden.
(namespace_definition !name body: (_) @hidden)

; What C has not.
[(class_specifier body: (_)) (namespace_definition) (template_declaration) (access_specifier) (using_declaration) (alias_declaration)] @cpp
