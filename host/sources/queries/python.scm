; What is declared.
(function_definition name: (_) @name body: (_) @body) @function
(class_definition name: (_) @name body: (_) @body) @class
(assignment left: (identifier) @name) @binding
(assignment left: (pattern_list (identifier) @name)) @binding
(assignment left: (tuple_pattern (identifier) @name)) @binding
(assignment left: (attribute object: (identifier) attribute: (_) @name)) @declaration
(assignment left: (pattern_list (attribute object: (identifier) attribute: (_) @name))) @declaration
(assignment left: (tuple_pattern (attribute object: (identifier) attribute: (_) @name))) @declaration
(assignment left: (_ (list_splat_pattern (attribute object: (identifier) attribute: (_) @name)))) @declaration
(assignment left: (attribute object: (identifier) @self attribute: (_) @name) (#eq? @self "self")) @attribute
(type_alias_statement . (type [(identifier) @name (generic_type . (identifier) @name)])) @binding @type

; What stands in a class.
(class_definition body: (block [
  (function_definition) @method
  (decorated_definition (function_definition) @method)
  (expression_statement (assignment) @attribute)
  (if_statement [
    (block [(function_definition) @method (decorated_definition (function_definition) @method)])
    (else_clause (block [(function_definition) @method (decorated_definition (function_definition) @method)]))
  ])
]))
(function_definition name: (_) @called (#eq? @called "__init__")) @constructor

; What belongs to the declaration in it.
(decorated_definition) @wrapper

; What a name holds.
(assignment right: (_) @value) @of
(assignment right: (lambda)) @callable

; The docstring.
(function_definition body: (block . (expression_statement (string) @docstring))) @of
(class_definition body: (block . (expression_statement (string) @docstring))) @of

; What is public.
(assignment left: (identifier) @list (#eq? @list "__all__"))
(assignment left: (identifier) @list right: [
    (list (string (string_content) @export))
    (tuple (string (string_content) @export))
    (binary_operator (list (string (string_content) @export)))
  ] (#eq? @list "__all__"))
(augmented_assignment left: (identifier) @list right: [
    (list (string (string_content) @export))
    (tuple (string (string_content) @export))
  ] (#eq? @list "__all__"))
(call
  function: (attribute object: (identifier) @list)
  arguments: (argument_list [
    (list (string (string_content) @export))
    (tuple (string (string_content) @export))
    (string (string_content) @export)
  ])
  (#eq? @list "__all__"))

(function_definition body: (_) @local)

(comment) @comment

; What a class says that it has.
(class_definition body: (block (expression_statement (assignment left: (identifier) @slots right: [
    (tuple (string (string_content) @slot))
    (list (string (string_content) @slot))
    (string (string_content) @slot)
  ]))) (#eq? @slots "__slots__"))
